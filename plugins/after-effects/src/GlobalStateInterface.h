#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "AEProjectPathUtilsInterface.h"
#include "AE_APISuiteHandlerManagerInterface.h"
#include "AE_GeneralPlug.h"
#include "BackgroundForegroundSwitcherInterface.h"

/// Holds the state that the hooks share. Paths are UTF-8. Operations that ask the host throw
/// `MissingSuite`. Main thread only.
///
/// Each tick updates the current path and dirty flag first. It copies them to the last path and
/// dirty flag when it ends, so the pairs differ only within a tick.
class GlobalStateInterface {
 public:
  /// The entry point's arguments. The suite isn't owned.
  int32_t pluginId = 0;
  SPBasicSuite* picaBasicSuite = nullptr;
  int32_t hostMajorVersion = 0;
  int32_t hostMinorVersion = 0;
  /// The command id of the menu item.
  AEGP_Command menuCommand = 0;
  bool tamberlinkInitialized = false;
  /// Whether the modal override may act.
  bool suppressModalWindows = false;
  std::string lastProjectPath;
  bool lastProjectDirty = false;
  std::string currentProjectPath;
  bool currentProjectDirty = false;
  /// Seconds since 1970, or 0 if there is no file at the current path.
  int64_t currentProjectModificationDate = 0;
  /// Seconds since 1970, read after the modification date.
  int64_t currentTime = 0;
  bool fontActivationInProgress = false;
  /// Counts every tick. An activation sets it to 0.
  int32_t ticksSinceActivationStart = 0;
  /// The framework's texts for its dialogs, empty between ticks.
  std::string fontsToResolve;
  std::string restrictedFonts;
  /// The path of the project whose fonts are activated.
  std::string activationProjectPath;
  /// True from the activation's close of the project until the activation ends.
  bool projectIsReopening = false;
  /// Null until the first tick, unless set earlier.
  std::shared_ptr<AE_APISuiteHandlerManagerInterface> suiteHandlerManager;
  std::shared_ptr<AEProjectPathUtilsInterface> projectPathUtils;
  /// For other users of this interface: the plug-in's own steps make a switcher where they need
  /// one.
  std::shared_ptr<BackgroundForegroundSwitcherInterface> backgroundForegroundSwitcher;

  /// Write and read `projectIsReopening` and `suppressModalWindows`.
  virtual void SetProjectIsReopening(bool reopening) = 0;
  virtual bool ProjectIsReopening() = 0;
  virtual void setShouldSuppressModalWindows(bool suppress) = 0;
  virtual bool shouldSuppressModalWindows() = 0;
  /// Reads the project's path from the host. If there is one, starts an activation of its fonts:
  /// the next tick is the first. Restarts a running one in the same way. Without a path, changes
  /// nothing but `activationProjectPath`, which is then empty.
  virtual void startFontActivationProcess() = 0;
  /// Ends the activation and lets the modal override act again. Leaves `projectIsReopening` and the
  /// texts for the dialogs alone.
  virtual void endFontActivationProcess() = 0;
  /// Tells the modal override that the project opening under way is over.
  virtual void projectOpened() = 0;
  /// Asks the framework whether the plug-in is enabled. Returns its last answer if it gives none,
  /// or true if it never gave one.
  virtual bool isPluginEnabled() = 0;
  /// Asks the host for unsaved changes. Works before the first tick.
  virtual bool isProjectDirty() = 0;
  /// Takes the tick's snapshot and counts the tick. Builds missing collaborators.
  virtual void updateGlobalState() = 0;

 protected:
  GlobalStateInterface() = default;
  ~GlobalStateInterface() = default;
};
