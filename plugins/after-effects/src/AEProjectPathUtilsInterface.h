#pragma once

#include <cstdint>
#include <string>

class AE_APISuiteHandlerManagerInterface;

/// What the logic asks about the host's current project. Texts are UTF-8. `manager` is the road to
/// the host and is used for the call only. Throws the `int` 516 when the host lacks a suite. Main
/// thread only.
class AEProjectPathUtilsInterface {
 public:
  /// The project's path; empty when there is no project or it has never been saved.
  virtual std::string getAfterEffectsProjectPathUTF8(
      AE_APISuiteHandlerManagerInterface* manager) = 0;
  /// False also when there is no project.
  virtual bool isAfterEffectsProjectDirty(AE_APISuiteHandlerManagerInterface* manager) = 0;
  /// Has the host open the project at `path`, cut at its first invalid byte. Returns the host's
  /// code.
  virtual uint32_t openProject(AE_APISuiteHandlerManagerInterface* manager, std::string path) = 0;

 protected:
  ~AEProjectPathUtilsInterface() = default;
};
