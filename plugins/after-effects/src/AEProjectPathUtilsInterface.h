#pragma once

#include <cstdint>
#include <string>

class AE_APISuiteHandlerManagerInterface;

/// Asks about the host's current project, through a `manager` that is borrowed for the call. Texts
/// are UTF-8. Throws `MissingSuite`. Main thread only.
class AEProjectPathUtilsInterface {
 public:
  /// Returns the project's path, empty if there is no project or if it has never been saved.
  virtual std::string getAfterEffectsProjectPathUTF8(
      AE_APISuiteHandlerManagerInterface* manager) = 0;
  /// Tests for unsaved changes; false if there is no project.
  virtual bool isAfterEffectsProjectDirty(AE_APISuiteHandlerManagerInterface* manager) = 0;
  /// Opens the project at `path`, cut at the first byte that isn't UTF-8. Returns the host's code.
  virtual uint32_t openProject(AE_APISuiteHandlerManagerInterface* manager, std::string path) = 0;

 protected:
  ~AEProjectPathUtilsInterface() = default;
};
