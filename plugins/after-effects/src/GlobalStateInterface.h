#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "AEProjectPathUtilsInterface.h"
#include "AE_APISuiteHandlerManagerInterface.h"
#include "AE_GeneralPlug.h"
#include "BackgroundForegroundSwitcherInterface.h"

/// All mutable state of the plug-in, and the operations on it. Paths are UTF-8. Main thread only.
/// Operations that ask the host throw the `int` 516 when it lacks a suite.
///
/// Between ticks the pairs of last and current members are equal. Within a tick, between the
/// snapshot and the hook's end, the last pair is that of the previous tick.
class GlobalStateInterface {
 public:
  /// The next four are what the host gave the entry point.
  int32_t pluginId = 0;
  SPBasicSuite* picaBasicSuite = nullptr;  ///< not owned
  int32_t hostMajorVersion = 0;
  int32_t hostMinorVersion = 0;
  /// The host's command id of the menu item.
  AEGP_Command menuCommand = 0;
  bool tamberlinkInitialized = false;
  /// The modal override may act.
  bool suppressModalWindows = false;
  std::string lastProjectPath;
  bool lastProjectDirty = false;
  std::string currentProjectPath;
  bool currentProjectDirty = false;
  /// Seconds since 1970; 0 when there is no file at the current path.
  int64_t currentProjectModificationDate = 0;
  /// Seconds since 1970, read after the date.
  int64_t currentTime = 0;
  bool fontActivationInProgress = false;
  /// Counts on every tick; means something once a process has started.
  int32_t ticksSinceActivationStart = 0;
  /// The framework's texts for its dialogs; empty between ticks.
  std::string fontsToResolve;
  std::string restrictedFonts;
  /// The project that the font activation process works on.
  std::string activationProjectPath;
  /// The process has closed the project and has yet to finish its reopening.
  bool projectIsReopening = false;
  /// Null until the first tick; what is set beforehand stays.
  std::shared_ptr<AE_APISuiteHandlerManagerInterface> suiteHandlerManager;
  std::shared_ptr<AEProjectPathUtilsInterface> projectPathUtils;
  std::shared_ptr<BackgroundForegroundSwitcherInterface> backgroundForegroundSwitcher;

  /// These four write and read `projectIsReopening` and `suppressModalWindows`.
  virtual void SetProjectIsReopening(bool reopening) = 0;
  virtual bool ProjectIsReopening() = 0;
  virtual void setShouldSuppressModalWindows(bool suppress) = 0;
  virtual bool shouldSuppressModalWindows() = 0;
  /// Reads the project's path from the host; with one, the next tick is the process's first. During
  /// a running process the path is taken anew, and with one the count starts again.
  virtual void startFontActivationProcess() = 0;
  /// Ends the process and lets the modal override act again. Leaves `projectIsReopening` and the
  /// texts for the dialogs alone.
  virtual void endFontActivationProcess() = 0;
  /// Tells the modal override that the opening under way is over.
  virtual void projectOpened() = 0;
  /// Asks the framework on every call; the latest answer stands until it writes another.
  virtual bool isPluginEnabled() = 0;
  /// Asks the host; doesn't need the collaborators.
  virtual bool isProjectDirty() = 0;
  /// Takes the snapshot of a tick and counts the tick. Builds the collaborators that are missing.
  virtual void updateGlobalState() = 0;

 protected:
  GlobalStateInterface() = default;
  ~GlobalStateInterface() = default;
};
