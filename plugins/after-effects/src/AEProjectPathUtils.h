#pragma once

#include <string>

#include "AEProjectPathUtilsInterface.h"

/// Converts between the host's UTF-16 and the plug-in's UTF-8. Takes a host path with an unpaired
/// surrogate for an empty one.
class AEProjectPathUtils final : public AEProjectPathUtilsInterface {
 public:
  std::string getAfterEffectsProjectPathUTF8(AE_APISuiteHandlerManagerInterface* manager) override;
  bool isAfterEffectsProjectDirty(AE_APISuiteHandlerManagerInterface* manager) override;
  uint32_t openProject(AE_APISuiteHandlerManagerInterface* manager, std::string path) override;
};
