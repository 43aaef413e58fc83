#pragma once

#include <string>

#include "AEGP_SuiteHandler.h"

/// The host's suite calls as small named operations. Main thread only.
///
/// Operations that return an `A_Err` return the host's code, 0 for success. Those that return a
/// value drop the host's code: null, false or the empty text stands for a failure. Memory handles
/// belong to the caller, who locks, reads, unlocks and frees them, in that order. The first use of
/// a suite that the host refuses throws the `int` 516.
class AE_APISuiteHandlerManagerInterface {
 public:
  /// `basic` isn't owned. Null throws the `int` 516.
  explicit AE_APISuiteHandlerManagerInterface(SPBasicSuite* basic) : mSuiteHandler(basic) {}

  virtual AEGP_SuiteHandler* suite_handler_ptr() = 0;
  /// Closes without saving, by putting a new project in the current one's place.
  virtual A_Err closeCurrentProject() = 0;
  virtual A_Err freeMemHandle(_Up_OpaqueMem** memH) = 0;
  /// NUL-terminated UTF-16, valid until the unlock.
  virtual unsigned short* getLockedUTF16StringStart(_Up_OpaqueMem** memH) = 0;
  virtual _AEGP_Project** getProjectByIndex(int index) = 0;
  virtual _Up_OpaqueMem** getProjectPathMemHandle(_AEGP_Project** project) = 0;
  virtual bool isProjectDirty(_AEGP_Project** project) = 0;
  /// `path` is NUL-terminated and borrowed for the call.
  virtual A_Err openProjectFromUTF16Path(unsigned short* path) = 0;
  virtual A_Err purgeImageCache() = 0;
  virtual A_Err refreshAllWindows() = 0;
  virtual A_Err unlockMemHandle(_Up_OpaqueMem** memH) = 0;
  /// Returns the code of the refresh that follows the update.
  virtual A_Err updateFontList() = 0;
  /// "1" for enabled, "0" for disabled.
  virtual std::string getDiskCacheEnabledSetting() = 0;
  virtual A_Err disableDiskCache() = 0;
  virtual A_Err enableDiskCache() = 0;
  virtual A_Err setDiskCachePreference(std::string value) = 0;

 protected:
  ~AE_APISuiteHandlerManagerInterface() = default;

  AEGP_SuiteHandler mSuiteHandler;
};
