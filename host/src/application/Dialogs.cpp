#include "Dialogs.h"

#include <algorithm>
#include <array>
#include <utility>

namespace host {
namespace {

// Never destroyed, like the host that uses them.
const auto& kWindow = *new desktop::WindowClass("NSWindow");
const auto& kPanel = *new desktop::WindowClass("NSPanel", &kWindow);
const auto& kDialog = *new desktop::WindowClass(kDialogClass, &kPanel);

struct Titles {
  std::string_view language, openProject, resolveFonts;
};

constexpr std::array<Titles, 7> kTitles{{
    {"en", "Open Project", "Resolve Fonts"},
    {"fr", "Ouvrir un projet", "Résoudre les polices"},
    {"de", "Projekt öffnen", "Schriftarten auflösen"},
    {"es", "Abrir proyecto", "Corregir fuentes"},
    {"it", "Apri progetto", "Risoluzione font"},
    {"pt", "Abrir projeto", "Solucionar fontes"},
    {"ja", "プロジェクトを開く", "フォントを解決する"},
}};

const Titles* FindTitles(std::string_view language) {
  const auto* const found = std::find_if(kTitles.begin(), kTitles.end(), [&](const Titles& titles) {
    return titles.language == language;
  });
  return found == kTitles.end() ? nullptr : found;
}

}  // namespace

bool IsLanguage(std::string_view language) {
  return FindTitles(language) != nullptr;
}

std::string OpenProjectTitle(std::string_view language) {
  return std::string(FindTitles(language)->openProject);
}

std::string MissingFontsTitle(std::string_view language, int majorVersion) {
  return majorVersion < 114 ? "After Effects" : std::string(FindTitles(language)->resolveFonts);
}

DialogWindow::DialogWindow(const desktop::WindowClass& windowClass, const std::string& title,
                           std::function<void(const DialogWindow&, const desktop::KeyEvent&)> onKey)
    : Window(windowClass, title), mOnKey(std::move(onKey)) {}

void DialogWindow::sendEvent(const desktop::KeyEvent& event) {
  mOnKey(*this, event);
  if (isEscape(event)) mDismissed = true;
}

bool DialogWindow::isEscape(const desktop::KeyEvent& event) const {
  static constexpr uint16_t kEscapeKey = 53;
  return event.type == desktop::EventType::keyDown && event.windowNumber == windowNumber() &&
         event.keyCode == kEscapeKey && event.characters == u"\x1b";
}

}  // namespace host
