#include "NSAppOverride.h"

#include <cstdio>

#include "GlobalState.h"
#include "ModalWindow.h"

namespace modal_window {
namespace {

constexpr char kDialogClass[] = "DVAMacDialog";
constexpr char kMissingFontsTitleBefore114[] = "After Effects";
constexpr int32_t kFirstVersionWithResolveFonts = 114;

// English, French, German, Spanish, Italian, Portuguese, Japanese. Null ends the list.
constexpr const char* openProjectDialogTitles[] = {
    "Open Project",  "Ouvrir un projet", "Projekt öffnen",     "Abrir proyecto",
    "Apri progetto", "Abrir projeto",    "プロジェクトを開く", nullptr};

// The same, but Japanese before Portuguese.
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

void dismissIfMissingFonts(Window* window) {
  const bool enabled = global_state.isPluginEnabled();
  const bool missing = isMissingFontsWindow(window, global_state.hostMajorVersion);
  if (enabled && missing) {
    suppressWindowAndStartFontActivationProcess(window, global_state.hostMajorVersion);
  }
  setOpenProjectDialog(nullptr);
}

}  // namespace

void recordOrDismiss(Window* window) {
  if (!global_state.shouldSuppressModalWindows()) return;
  if (!isKindOfClass(window, kDialogClass)) return;
  std::printf("Saw a DVAMacDialog titled: %s\n", titleOf(window).c_str());
  if (isThisTheOpenProjectDialog(window)) {
    setOpenProjectDialog(window);
    lookingForMissingFontsDialogs = true;
  } else if (lookingForMissingFontsDialogs) {
    dismissIfMissingFonts(window);
  }
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
  } catch (int) {
    // The host lacks a suite. No activation starts, and the modal session still has to begin.
  }
}

}  // namespace modal_window

void projectWasOpened() {
  modal_window::lookingForMissingFontsDialogs = false;
  modal_window::setOpenProjectDialog(nullptr);
}
