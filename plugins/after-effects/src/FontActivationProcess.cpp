#include "FontActivationProcess.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>

#include "BackgroundForegroundSwitcher.h"
#include "DebugUtils.h"
#include "TBKLoader.h"

namespace {

constexpr uint64_t kFontBufferSize = 0x20000;

constexpr int32_t kDocumentTick = 1;
constexpr int32_t kFontListTick = 3;
constexpr int32_t kReopenTick = 10;
constexpr int32_t kEndTick = 25;

// The text that the first step exchanges with the framework.
class FontBuffer {
 public:
  char* data() { return mText.get(); }
  uint64_t* sizeInOut() { return &mSize; }
  std::string text() const { return mText.get(); }
  bool empty() const { return mText[0] == '\0'; }

  // Clamps the size to the capacity and forces a terminator, after each call of the framework.
  void clampAndTerminate() {
    if (mSize == 0 || mSize > kFontBufferSize) mSize = kFontBufferSize;
    mText[kFontBufferSize - 1] = '\0';
  }

  void assign(const std::string& text) {
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
      CallTamberlink(&TBKLoader::pfHandleOpenExistingDocument, state->activationProjectPath,
                     fontBuffer.data(), fontBuffer.sizeInOut(), activatedOnOpen);
  fontBuffer.clampAndTerminate();
  return result;
}

void resolveFonts(GlobalStateInterface* state, TBKCallTracker* tracker, FontBuffer& fontBuffer,
                  int32_t* activatedByChoice) {
  fontBuffer.assign(state->fontsToResolve);
  const uint32_t resolveResult =
      CallTamberlink(&TBKLoader::pfInvokeResolveDialog, fontBuffer.data(), fontBuffer.sizeInOut());
  fontBuffer.clampAndTerminate();
  tracker->invokeResolveDialogCalled = true;
  state->fontsToResolve.clear();
  const bool chosen =
      resolveResult == CoreErrorCodes::kSuccess || resolveResult == CoreErrorCodes::kItemNotHandled;
  if (chosen && !fontBuffer.empty()) {
    CallTamberlink(&TBKLoader::pfActivateChosenFonts, state->activationProjectPath,
                   fontBuffer.data(), activatedByChoice);
  }
}

void showRestrictedFonts(GlobalStateInterface* state, TBKCallTracker* tracker,
                         FontBuffer& fontBuffer) {
  fontBuffer.assign(state->restrictedFonts);
  CallTamberlink(&TBKLoader::pfInvokeRestrictedFontsDialog, state->activationProjectPath,
                 fontBuffer.data());
  tracker->invokeRestrictedFontsDialogCalled = true;
  state->restrictedFonts.clear();
}

void traceStep(const GlobalStateInterface& state, const char* step, A_Err error = A_Err_NONE) {
  if (!TraceIsOn()) return;
  OutputIndentedAndFormattedString(0, "Activation of '%s', tick %d: %s",
                                   state.activationProjectPath.c_str(),
                                   state.ticksSinceActivationStart, step);
  if (error != A_Err_NONE) OutputIndentedAndFormattedString(0, "The host returned %d", error);
}

// The host finds a project's new fonts when it opens it. A project with unsaved changes stays open.
void closeProjectUnlessDirty(GlobalStateInterface* state) {
  _AEGP_Project** project = state->suiteHandlerManager->getProjectByIndex(0);
  if (state->suiteHandlerManager->isProjectDirty(project)) {
    traceStep(*state, "the project has unsaved changes and stays open");
    return;
  }
  traceStep(*state, "the host closes the project, to reopen it",
            state->suiteHandlerManager->closeCurrentProject());
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
  traceStep(*state, "the host updates its font list", state->suiteHandlerManager->updateFontList());
}

A_Err reopenProject(GlobalStateInterface* state, TBKCallTracker* tracker) {
  // The path of the activation's start: since the first step closed the project, the host has none.
  const auto error = static_cast<A_Err>(state->projectPathUtils->openProject(
      state->suiteHandlerManager.get(), state->activationProjectPath));
  tracker->openProjectCalled = true;
  traceStep(*state, "the host reopens the project", error);
  return error;
}

}  // namespace

A_Err runStepInFontActivationProcess(GlobalStateInterface* state, TBKCallTracker* tracker) {
  const int32_t tick = state->ticksSinceActivationStart;
  if (tick == kDocumentTick) {
    traceStep(*state, "the framework activates the fonts");
    activateFontsOfDocument(state, tracker);
  } else if (tick == kFontListTick) {
    updateFontList(state, tracker);
  } else if (tick == kReopenTick && state->ProjectIsReopening()) {
    return reopenProject(state, tracker);
  } else if (tick >= kEndTick) {
    traceStep(*state, "the end");
    state->SetProjectIsReopening(false);
    state->endFontActivationProcess();
  }
  return A_Err_NONE;
}
