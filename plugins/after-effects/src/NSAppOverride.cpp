#include "NSAppOverride.h"

#include <cstdio>

#include "GlobalState.h"
#include "ModalWindow.h"

namespace {

constexpr char kDialogClass[] = "DVAMacDialog";
constexpr char kMissingFontsTitleBefore114[] = "After Effects";
constexpr int32_t kFirstVersionWithResolveFonts = 114;

// By language: English, French, German, Spanish, Italian, then Portuguese and Japanese in either
// order. Each list ends with null.
constexpr const char* openProjectDialogTitles[] = {
    "Open Project",  "Ouvrir un projet", "Projekt öffnen",     "Abrir proyecto",
    "Apri progetto", "Abrir projeto",    "プロジェクトを開く", nullptr};

constexpr const char* resolveFontsDialogTitles[] = {
    "Resolve Fonts",    "Résoudre les polices", "Schriftarten auflösen", "Corregir fuentes",
    "Risoluzione font", "フォントを解決する",   "Solucionar fontes",     nullptr};

// An open project dialog was seen, and the next dialogs are candidates.
bool lookingForMissingFontsDialogs = false;

bool listHolds(const char* const* titles, const std::string& title) {
  for (; *titles; ++titles) {
    if (title == *titles) return true;
  }
  return false;
}

void considerCandidate(ModalWindow* window) {
  const bool enabled = global_state.isPluginEnabled();
  const bool missing = isMissingFontsWindow(window, global_state.hostMajorVersion);
  if (enabled && missing) {
    suppressWindowAndStartFontActivationProcess(window, global_state.hostMajorVersion);
  }
  setOpenProjectDialog(nullptr);
}

}  // namespace

void projectWasOpened() {
  lookingForMissingFontsDialogs = false;
  setOpenProjectDialog(nullptr);
}

void considerModalWindow(ModalWindow* window) {
  if (!global_state.shouldSuppressModalWindows()) return;
  if (!isKindOfClass(window, kDialogClass)) return;
  std::printf("Saw a DVAMacDialog titled: %s\n", titleOf(window).c_str());
  if (isThisTheOpenProjectDialog(window)) {
    setOpenProjectDialog(window);
    lookingForMissingFontsDialogs = true;
  } else if (lookingForMissingFontsDialogs) {
    considerCandidate(window);
  }
}

bool isThisTheOpenProjectDialog(ModalWindow* window) {
  return listHolds(openProjectDialogTitles, titleOf(window));
}

bool isMissingFontsWindow(ModalWindow* window, int32_t aeMajorVersion) {
  const std::string title = titleOf(window);
  if (aeMajorVersion >= kFirstVersionWithResolveFonts) {
    return listHolds(resolveFontsDialogTitles, title);
  }
  if (title != kMissingFontsTitleBefore114) return false;
  ModalWindow* openDialog = openProjectDialog();
  return !openDialog || !isVisible(openDialog);
}

void suppressWindowAndStartFontActivationProcess(ModalWindow* window, int32_t /*aeMajorVersion*/) {
  makeKeyAndOrderFront(window);
  sendEscapeKeyToWindow(window);
  lookingForMissingFontsDialogs = false;
  try {
    global_state.startFontActivationProcess();
  } catch (int) {
    // The host lacks a suite: no process starts, and the session begins all the same.
  }
}
