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
  /// Gives back a handle that is unlocked.
  virtual A_Err freeMemHandle(_Up_OpaqueMem** memH) = 0;
  /// NUL-terminated UTF-16, valid until the unlock.
  virtual unsigned short* getLockedUTF16StringStart(_Up_OpaqueMem** memH) = 0;
  /// The project; null also when there is none at `index`, which counts from 0.
  virtual _AEGP_Project** getProjectByIndex(int index) = 0;
  /// The project's path as NUL-terminated UTF-16. Throws also when the host lacks the memory suite,
  /// without which the handle couldn't be given back.
  virtual _Up_OpaqueMem** getProjectPathMemHandle(_AEGP_Project** project) = 0;
  /// Whether the project has unsaved changes.
  virtual bool isProjectDirty(_AEGP_Project** project) = 0;
  /// `path` is NUL-terminated and borrowed for the call.
  virtual A_Err openProjectFromUTF16Path(unsigned short* path) = 0;
  /// Has the host run its own command 2372.
  virtual A_Err purgeImageCache() = 0;
  /// Has the host draw all its windows anew.
  virtual A_Err refreshAllWindows() = 0;
  /// Takes back one lock.
  virtual A_Err unlockMemHandle(_Up_OpaqueMem** memH) = 0;
  /// Has the host scan the fonts and draw its windows anew. Returns the code of the latter.
  virtual A_Err updateFontList() = 0;
  /// The host's preference for its disk cache: "1" for enabled, also where none is stored, "0" for
  /// disabled.
  virtual std::string getDiskCacheEnabledSetting() = 0;
  virtual A_Err disableDiskCache() = 0;
  virtual A_Err enableDiskCache() = 0;
  /// Stores "1" or "0", which is what the two above do.
  virtual A_Err setDiskCachePreference(std::string value) = 0;

 protected:
  ~AE_APISuiteHandlerManagerInterface() = default;

  AEGP_SuiteHandler mSuiteHandler;
};
