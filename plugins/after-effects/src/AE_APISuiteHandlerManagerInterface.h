#pragma once

#include <string>

#include "AEGP_SuiteHandler.h"

/// Names the host's suite calls that the plug-in uses. Main thread only.
///
/// Operations that return an `A_Err` return the host's code, 0 for success. The others drop the
/// host's code and return null, false or an empty text for a failure. Memory handles belong to the
/// caller: lock, read, unlock, free. Throws `MissingSuite` at each use of a suite that the host
/// refuses.
class AE_APISuiteHandlerManagerInterface {
 public:
  /// Doesn't own `basic`. Throws `MissingSuite` for null.
  explicit AE_APISuiteHandlerManagerInterface(SPBasicSuite* basic) : mSuiteHandler(basic) {}

  /// Returns the suite cache, which lives as long as this object.
  virtual AEGP_SuiteHandler* suite_handler_ptr() = 0;
  /// Replaces the current project by a new one, without saving it.
  virtual A_Err closeCurrentProject() = 0;
  /// Frees an unlocked handle.
  virtual A_Err freeMemHandle(_Up_OpaqueMem** memH) = 0;
  /// Locks the handle and returns its NUL-terminated UTF-16, valid until the unlock.
  virtual unsigned short* getLockedUTF16StringStart(_Up_OpaqueMem** memH) = 0;
  /// Returns the project at `index`, counted from 0, or null if there is none.
  virtual _AEGP_Project** getProjectByIndex(int index) = 0;
  /// Returns a handle to the project's path, NUL-terminated UTF-16.
  virtual _Up_OpaqueMem** getProjectPathMemHandle(_AEGP_Project** project) = 0;
  /// Tests for unsaved changes.
  virtual bool isProjectDirty(_AEGP_Project** project) = 0;
  /// Opens a project. `path` is NUL-terminated and borrowed for the call.
  virtual A_Err openProjectFromUTF16Path(unsigned short* path) = 0;
  /// Runs the host's command 2372.
  virtual A_Err purgeImageCache() = 0;
  /// Redraws the host's windows.
  virtual A_Err refreshAllWindows() = 0;
  /// Undoes one lock.
  virtual A_Err unlockMemHandle(_Up_OpaqueMem** memH) = 0;
  /// Makes the host scan the fonts, then redraws its windows. Returns the code of the redrawing.
  virtual A_Err updateFontList() = 0;
  /// Reads the host's preference for its disk cache: "1" or "0" for enabled or disabled, "1" if it
  /// has none.
  virtual std::string getDiskCacheEnabledSetting() = 0;
  virtual A_Err disableDiskCache() = 0;
  virtual A_Err enableDiskCache() = 0;
  /// Stores `value` as that preference, unchecked.
  virtual A_Err setDiskCachePreference(std::string value) = 0;

 protected:
  ~AE_APISuiteHandlerManagerInterface() = default;

  AEGP_SuiteHandler mSuiteHandler;
};
