#include "NSAppOverride.h"

#include <cstdio>

#include "DebugUtils.h"
#include "GlobalState.h"
#include "NSAppOverridePlatform.h"

namespace modal_window {
namespace {

constexpr char kDialogClass[] = "DVAMacDialog";
constexpr char kMissingFontsTitleBefore114[] = "After Effects";
constexpr int32_t kFirstVersionWithResolveFonts = 114;

// English, French, German, Spanish, Italian, Portuguese, Japanese. Null ends the list.
constexpr const char* openProjectDialogTitles[] = {
    "Open Project",  "Ouvrir un projet", "Projekt öffnen",     "Abrir proyecto",
    "Apri progetto", "Abrir projeto",    "プロジェクトを開く", nullptr};

// In the same languages, but Japanese before Portuguese.
constexpr const char* resolveFontsDialogTitles[] = {
    "Resolve Fonts",    "Résoudre les polices", "Schriftarten auflösen", "Corregir fuentes",
    "Risoluzione font", "フォントを解決する",   "Solucionar fontes",     nullptr};

// After an open project dialog, when the next dialog may be the missing fonts dialog.
bool lookingForMissingFontsDialogs = false;

bool listHolds(const char* const* titles, const std::string& title) {
  for (; *titles; ++titles) {
    if (title == *titles) return true;
  }
  return false;
}

// The functions below return what they decided, as the trace tells it.

const char* dismissIfMissingFonts(Window* window) {
  const bool enabled = global_state.isPluginEnabled();
  const bool missing = isMissingFontsWindow(window, global_state.hostMajorVersion);
  if (enabled && missing) {
    suppressWindowAndStartFontActivationProcess(window, global_state.hostMajorVersion);
  }
  setOpenProjectDialog(nullptr);
  if (!missing) return "It passes: it isn't the missing fonts dialog";
  return enabled ? "It gets the Escape key"
                 : "It passes: the framework reports the plug-in disabled";
}

const char* decideOn(Window* window) {
  if (!global_state.shouldSuppressModalWindows()) return "It passes: the override is off";
  if (!isKindOfClass(window, kDialogClass)) return "It passes: it isn't a DVAMacDialog";
  std::printf("Saw a DVAMacDialog titled: %s\n", titleOf(window).c_str());
  if (isThisTheOpenProjectDialog(window)) {
    setOpenProjectDialog(window);
    lookingForMissingFontsDialogs = true;
    return "It passes: it is the open project dialog";
  }
  if (lookingForMissingFontsDialogs) return dismissIfMissingFonts(window);
  return "It passes: no open project dialog came before it";
}

const char* overrideState() {
  return isOverrideInPlace() ? "The application has the override"
                             : "The application has another implementation than the override";
}

}  // namespace

void handleModalWindow(Window* window) {
  if (!TraceIsOn()) {
    decideOn(window);
    return;
  }
  OutputIndentedAndFormattedString(0, "A modal dialog begins: class '%s', title '%s'",
                                   classNameOf(window).c_str(), titleOf(window).c_str());
  OutputIndentedAndFormattedString(0, "%s", overrideState());
  OutputIndentedAndFormattedString(0, "%s", decideOn(window));
}

void traceFailedEscape(const char* exception) {
  if (TraceIsOn()) OutputIndentedAndFormattedString(0, "The key raised: %s", exception);
}

bool isThisTheOpenProjectDialog(Window* window) {
  return listHolds(openProjectDialogTitles, titleOf(window));
}

bool isMissingFontsWindow(Window* window, int32_t aeMajorVersion) {
  const std::string title = titleOf(window);
  if (aeMajorVersion >= kFirstVersionWithResolveFonts) {
    return listHolds(resolveFontsDialogTitles, title);
  }
  if (title != kMissingFontsTitleBefore114) return false;
  Window* openDialog = openProjectDialog();
  return !openDialog || !isVisible(openDialog);
}

void suppressWindowAndStartFontActivationProcess(Window* window, int32_t /*aeMajorVersion*/) {
  makeKeyAndOrderFront(window);
  sendEscapeKeyToWindow(window);
  lookingForMissingFontsDialogs = false;
  try {
    global_state.startFontActivationProcess();
  } catch (MissingSuite) {
    // No activation starts, and the modal session still has to begin.
  }
}

}  // namespace modal_window

void traceModalOverride() {
  if (!TraceIsOn()) return;
  const char* const state = modal_window::overrideState();
  if (IsNews("override", state)) OutputIndentedAndFormattedString(0, "%s", state);
}

void projectWasOpened() {
  modal_window::lookingForMissingFontsDialogs = false;
  modal_window::setOpenProjectDialog(nullptr);
}
