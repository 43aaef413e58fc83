#pragma once

#include <string>

#include "AE_APISuiteHandlerManagerInterface.h"

/// Calls the host's suites. Acquires each at its first use and releases all when it is destroyed.
class AE_APISuiteHandlerManager final : public AE_APISuiteHandlerManagerInterface {
 public:
  using AE_APISuiteHandlerManagerInterface::AE_APISuiteHandlerManagerInterface;

  AEGP_SuiteHandler* suite_handler_ptr() override;
  A_Err closeCurrentProject() override;
  A_Err freeMemHandle(_Up_OpaqueMem** memH) override;
  unsigned short* getLockedUTF16StringStart(_Up_OpaqueMem** memH) override;
  _AEGP_Project** getProjectByIndex(int index) override;
  _Up_OpaqueMem** getProjectPathMemHandle(_AEGP_Project** project) override;
  bool isProjectDirty(_AEGP_Project** project) override;
  A_Err openProjectFromUTF16Path(unsigned short* path) override;
  A_Err purgeImageCache() override;
  A_Err refreshAllWindows() override;
  A_Err unlockMemHandle(_Up_OpaqueMem** memH) override;
  A_Err updateFontList() override;
  std::string getDiskCacheEnabledSetting() override;
  A_Err disableDiskCache() override;
  A_Err enableDiskCache() override;
  A_Err setDiskCachePreference(std::string value) override;
};
