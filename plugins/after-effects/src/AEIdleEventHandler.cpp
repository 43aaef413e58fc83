#include "AEIdleEventHandler.h"

#include <ctime>

#include "BackgroundForegroundSwitcher.h"
#include "DebugUtils.h"
#include "FontActivationProcess.h"
#include "TBKLoader.h"

namespace {

// More than these pass between two calls, so at least 10 whole seconds.
constexpr uint32_t kSecondsToWaitBetweenCallsToPluginIsEnabled = 9;
constexpr int64_t kRecentSaveSeconds = 4;

bool isTamberlinkEnabled() {
  static time_t last_check_plugin_is_enabled = 0;
  static bool plugin_is_enabled = true;
  // Nothing sets it: the plug-in tells the user by a message of its own, at most once. The variable
  // of the same name in `runIdleEvents` says whether it still may.
  static bool should_display_plugin_disabled_popup = false;
  if (!TBKLoader::GetSharedInstance()) return false;
  const time_t now = time(nullptr);
  if (now - last_check_plugin_is_enabled > time_t{kSecondsToWaitBetweenCallsToPluginIsEnabled}) {
    last_check_plugin_is_enabled = now;
    AskWhetherPluginIsEnabled(should_display_plugin_disabled_popup, &plugin_is_enabled);
  }
  return plugin_is_enabled;
}

bool showLogin() {
  bool show = false;
  CallTamberlink(&TBKLoader::pfShouldShowLogin, &show);
  return show;
}

void displayPluginDisabledMessage() {
  CallTamberlink(&TBKLoader::pfShowNotLoggedInMessageBox);
}

// The handlers of the four events always return true, and nobody reads it: an event counts as
// delivered, whatever the framework makes of it.

bool handleOpen(GlobalStateInterface* state, TBKCallTracker* tracker) {
  OutputIndentedAndFormattedString(0, "Handling Open");
  OutputIndentedAndFormattedString(0,
                                   "Starting Font Activation Process for a newly opened project.");
  try {
    state->startFontActivationProcess();
  } catch (MissingSuite) {
    // No activation starts, but the project is open, so stop waiting for its dialog.
    state->projectOpened();
    throw;
  }
  tracker->startFontActivationProcessCalled = true;
  state->projectOpened();
  return true;
}

bool handleClose(GlobalStateInterface* state, TBKCallTracker* tracker) {
  OutputIndentedAndFormattedString(0, "Handling Close");
  TamberlinkDocumentId id{};
  // The current path is empty.
  CallTamberlink(&TBKLoader::pfHandleCloseDocument, state->lastProjectPath, id.data());
  tracker->handleCloseDocumentCalled = true;
  BackgroundForegroundSwitcher switcher;
  // The names select nothing: these are three equal switches.
  for (const char* name :
       {"AE_CApplication_13.5", "AE_CApplication_14.0", "AE_CApplication_14.1"}) {
    switcher.backgroundForegroundApp(const_cast<char*>(name));
  }
  tracker->backgroundForegroundAppCalled = true;
  return true;
}

void saveDocument(GlobalStateInterface* state, TBKCallTracker* tracker) {
  TamberlinkDocumentId id{};
  CallTamberlink(&TBKLoader::pfHandleSaveDocument, state->currentProjectPath, id.data());
  tracker->handleSaveDocumentCalled = true;
}

bool handleSave(GlobalStateInterface* state, TBKCallTracker* tracker) {
  OutputIndentedAndFormattedString(0, "Handling Save");
  saveDocument(state, tracker);
  return true;
}

bool handleSaveAs(GlobalStateInterface* state, TBKCallTracker* tracker) {
  OutputIndentedAndFormattedString(0, "Handling Save As");
  TamberlinkDocumentId id{};
  uint64_t length = id.size();
  CallTamberlink(&TBKLoader::pfHandleCreateNewDocument, id.data(), &length);
  tracker->handleCreateNewDocumentCalled = true;
  // The framework may have left no terminator.
  id.back() = '\0';
  CallTamberlink(&TBKLoader::pfSetPathForDocument, state->currentProjectPath, id.data());
  tracker->setPathForDocumentCalled = true;
  saveDocument(state, tracker);
  return true;
}

// Tells a save from an open. A file this young was written by the host just now, unless the project
// before had no path and no changes. A path without a file also counts as saved.
bool wasSavedUnderNewPath(const GlobalStateInterface& state) {
  if (state.currentProjectModificationDate > state.currentTime - kRecentSaveSeconds) {
    return !state.lastProjectPath.empty() || state.lastProjectDirty;
  }
  return state.currentProjectModificationDate == 0;
}

void handlePathChange(GlobalStateInterface* state, TBKCallTracker* tracker) {
  OutputIndentedAndFormattedString(0,
                                   "Currently opened project has changed! New project path: '%s'",
                                   state->currentProjectPath.c_str());
  if (state->currentProjectPath.empty()) {
    handleClose(state, tracker);
  } else if (wasSavedUnderNewPath(*state)) {
    handleSaveAs(state, tracker);
  } else {
    handleOpen(state, tracker);
  }
}

void listenAndHandleProjectEvents(GlobalStateInterface* state, TBKCallTracker* tracker) {
  if (state->lastProjectPath != state->currentProjectPath) {
    handlePathChange(state, tracker);
  } else if (!state->currentProjectPath.empty() && state->lastProjectDirty &&
             !state->currentProjectDirty) {
    handleSave(state, tracker);
  }
}

}  // namespace

A_Err runIdleEvents(GlobalStateInterface* state, TBKCallTracker* tracker) {
  static bool should_display_plugin_disabled_popup = true;
  if (isTamberlinkEnabled()) {
    if (state->fontActivationInProgress) return runStepInFontActivationProcess(state, tracker);
    state->setShouldSuppressModalWindows(true);
    should_display_plugin_disabled_popup = true;
    listenAndHandleProjectEvents(state, tracker);
    return A_Err_NONE;
  }
  if (should_display_plugin_disabled_popup && showLogin()) {
    displayPluginDisabledMessage();
    should_display_plugin_disabled_popup = false;
  }
  state->setShouldSuppressModalWindows(false);
  return A_Err_NONE;
}
