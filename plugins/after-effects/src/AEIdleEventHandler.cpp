#include "AEIdleEventHandler.h"

#include <algorithm>
#include <cstring>
#include <ctime>
#include <memory>
#include <string>

#include "BackgroundForegroundSwitcher.h"
#include "DebugUtils.h"
#include "TBKLoader.h"

namespace {

constexpr uint32_t kSecondsToWaitBetweenCallsToPluginIsEnabled = 9;
// A file younger than this was written by the host just now, which tells a save from an open.
constexpr int64_t kSecondsThatASaveIsRecent = 4;
constexpr uint64_t kFontBufferSize = 0x20000;

constexpr int32_t kTickOfDocument = 1;
constexpr int32_t kTickOfFontListUpdate = 3;
constexpr int32_t kTickOfReopening = 10;
constexpr int32_t kTickOfEnd = 25;

bool isTamberlinkEnabled() {
  static time_t last_check_plugin_is_enabled = 0;
  static bool plugin_is_enabled = true;
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

bool handleOpen(GlobalStateInterface* state, TBKCallTracker* tracker) {
  OutputIndentedAndFormattedString(0, "Handling Open");
  OutputIndentedAndFormattedString(0,
                                   "Starting Font Activation Process for a newly opened project.");
  state->startFontActivationProcess();
  tracker->startFontActivationProcessCalled = true;
  state->projectOpened();
  return true;
}

bool handleClose(GlobalStateInterface* state, TBKCallTracker* tracker) {
  OutputIndentedAndFormattedString(0, "Handling Close");
  TamberlinkDocumentId id{};
  // The current path is empty by now.
  CallTamberlink(&TBKLoader::pfHandleCloseDocument, state->lastProjectPath.c_str(), id.data());
  tracker->handleCloseDocumentCalled = true;
  BackgroundForegroundSwitcher switcher;
  // The names select nothing; what counts is that it is done three times.
  for (const char* name :
       {"AE_CApplication_13.5", "AE_CApplication_14.0", "AE_CApplication_14.1"}) {
    switcher.backgroundForegroundApp(const_cast<char*>(name));
  }
  tracker->backgroundForegroundAppCalled = true;
  return true;
}

void saveDocument(GlobalStateInterface* state, TBKCallTracker* tracker) {
  TamberlinkDocumentId id{};
  CallTamberlink(&TBKLoader::pfHandleSaveDocument, state->currentProjectPath.c_str(), id.data());
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
  // The framework may have filled the buffer to its end.
  id.back() = '\0';
  CallTamberlink(&TBKLoader::pfSetPathForDocument, state->currentProjectPath.c_str(), id.data());
  tracker->setPathForDocumentCalled = true;
  saveDocument(state, tracker);
  return true;
}

// The text that passes between the plug-in and the framework during the first step. What the
// framework claims of its size is never believed beyond the real one, and the text always ends in
// the buffer.
class FontBuffer {
 public:
  char* data() { return mText.get(); }
  uint64_t* size() { return &mSize; }
  std::string text() const { return mText.get(); }
  bool empty() const { return mText[0] == '\0'; }

  // To be called after the framework had the buffer, before anybody reads it.
  void Contain() {
    if (mSize == 0 || mSize > kFontBufferSize) mSize = kFontBufferSize;
    mText[kFontBufferSize - 1] = '\0';
  }

  void Assign(const std::string& text) {
    const size_t length = std::min<size_t>(text.size(), mSize - 1);
    std::memcpy(mText.get(), text.data(), length);
    mText[length] = '\0';
  }

 private:
  std::unique_ptr<char[]> mText = std::make_unique<char[]>(kFontBufferSize);
  uint64_t mSize = kFontBufferSize;
};

uint32_t openExistingDocument(GlobalStateInterface* state, FontBuffer& fontBuffer,
                              int32_t* activatedOnOpen) {
  const uint32_t result =
      CallTamberlink(&TBKLoader::pfHandleOpenExistingDocument, state->activationProjectPath.c_str(),
                     fontBuffer.data(), fontBuffer.size(), activatedOnOpen);
  fontBuffer.Contain();
  return result;
}

void resolveFonts(GlobalStateInterface* state, TBKCallTracker* tracker, FontBuffer& fontBuffer,
                  int32_t* activatedByChoice) {
  fontBuffer.Assign(state->fontsToResolve);
  const uint32_t resolveResult =
      CallTamberlink(&TBKLoader::pfInvokeResolveDialog, fontBuffer.data(), fontBuffer.size());
  fontBuffer.Contain();
  tracker->invokeResolveDialogCalled = true;
  state->fontsToResolve.clear();
  const bool chosen =
      resolveResult == CoreErrorCodes::kSuccess || resolveResult == CoreErrorCodes::kItemNotHandled;
  if (chosen && !fontBuffer.empty()) {
    CallTamberlink(&TBKLoader::pfActivateChosenFonts, state->activationProjectPath.c_str(),
                   fontBuffer.data(), activatedByChoice);
  }
}

void showRestrictedFonts(GlobalStateInterface* state, TBKCallTracker* tracker,
                         FontBuffer& fontBuffer) {
  fontBuffer.Assign(state->restrictedFonts);
  CallTamberlink(&TBKLoader::pfInvokeRestrictedFontsDialog, state->activationProjectPath.c_str(),
                 fontBuffer.data());
  tracker->invokeRestrictedFontsDialogCalled = true;
  state->restrictedFonts.clear();
}

// The host finds new fonts only when it opens a project. One with unsaved changes stays open.
void closeProjectUnlessDirty(GlobalStateInterface* state) {
  _AEGP_Project** project = state->suiteHandlerManager->getProjectByIndex(0);
  if (state->suiteHandlerManager->isProjectDirty(project)) return;
  state->suiteHandlerManager->closeCurrentProject();
  state->SetProjectIsReopening(true);
}

void activateFontsOfDocument(GlobalStateInterface* state, TBKCallTracker* tracker) {
  FontBuffer fontBuffer;
  int32_t activatedOnOpen = 0;
  int32_t activatedByChoice = 0;
  uint32_t result = openExistingDocument(state, fontBuffer, &activatedOnOpen);
  if (result == CoreErrorCodes::kIndexOutOfRange) {
    result = openExistingDocument(state, fontBuffer, &activatedOnOpen);
  }
  tracker->handleOpenExistingDocumentCalled = true;
  if (result == CoreErrorCodes::kSuccess || result == CoreErrorCodes::kNotFound) {
    if (!fontBuffer.empty()) state->fontsToResolve = fontBuffer.text();
  } else if (result == CoreErrorCodes::kAlreadyInitialized) {
    if (!fontBuffer.empty()) state->restrictedFonts = fontBuffer.text();
  }
  if (!state->fontsToResolve.empty()) {
    resolveFonts(state, tracker, fontBuffer, &activatedByChoice);
  }
  if (!state->restrictedFonts.empty()) showRestrictedFonts(state, tracker, fontBuffer);
  if (activatedOnOpen > 0 || activatedByChoice > 0) closeProjectUnlessDirty(state);
}

void updateFontList(GlobalStateInterface* state, TBKCallTracker* tracker) {
  BackgroundForegroundSwitcher switcher;
  switcher.backgroundForegroundApp(const_cast<char*>("AE_CApplication_13.5"));
  tracker->backgroundForegroundAppCalled = true;
  state->suiteHandlerManager->updateFontList();
}

A_Err reopenProject(GlobalStateInterface* state, TBKCallTracker* tracker) {
  // The path from the start of the process: the host's current one is empty by now.
  const uint32_t error = state->projectPathUtils->openProject(state->suiteHandlerManager.get(),
                                                              state->activationProjectPath);
  tracker->openProjectCalled = true;
  return static_cast<A_Err>(error);
}

// Whether a path that the project didn't have a tick ago was given by a save.
bool wasSavedUnderNewPath(const GlobalStateInterface& state) {
  if (state.currentProjectModificationDate > state.currentTime - kSecondsThatASaveIsRecent) {
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

A_Err runStepInFontActivationProcess(GlobalStateInterface* state, TBKCallTracker* tracker) {
  const int32_t tick = state->ticksSinceActivationStart;
  if (tick == kTickOfDocument) {
    activateFontsOfDocument(state, tracker);
  } else if (tick == kTickOfFontListUpdate) {
    updateFontList(state, tracker);
  } else if (tick == kTickOfReopening && state->ProjectIsReopening()) {
    return reopenProject(state, tracker);
  } else if (tick >= kTickOfEnd) {
    state->SetProjectIsReopening(false);
    state->endFontActivationProcess();
  }
  return A_Err_NONE;
}
