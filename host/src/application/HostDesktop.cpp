#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <array>

#include "Host.h"
#include "TextFile.h"
#include "desktop/Application.h"
#include "desktop/Exception.h"
#include "desktop/Log.h"
#include "desktop/Workspace.h"

// The dialogs of the host, and the applications beside it.

namespace host {
namespace {

constexpr char kHostBundle[] = "com.adobe.AfterEffects";

// Never destroyed, like the host that uses them.
const auto& kWindow = *new desktop::WindowClass("NSWindow");
const auto& kPanel = *new desktop::WindowClass("NSPanel", &kWindow);
const auto& kHostDialog = *new desktop::WindowClass(kDialogClass, &kPanel);

struct Titles {
  std::string_view language, openProject, missingFonts;
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

// Returns the end if there are none.
const Titles* TitlesIn(std::string_view language) {
  return std::find_if(kTitles.begin(), kTitles.end(),
                      [&](const Titles& titles) { return titles.language == language; });
}

// A dialog of the host. Lives as long as it is open.
class Dialog final : public desktop::Window {
 public:
  using Window::Window;

  void sendEvent(const desktop::KeyEvent& event) override {
    constexpr uint16_t kEscapeKey = 53;
    const bool isEscape = event.type == desktop::EventType::keyDown &&
                          event.windowNumber == windowNumber() && event.keyCode == kEscapeKey &&
                          event.characters == u"\x1b";
    Host& host = TheHost();
    const std::string key =
        isEscape ? "Escape"
                 : fmt::format("key {} for window {}", event.keyCode, event.windowNumber);
    host.timeline.add(Actor::plugIn, fmt::format("sends {} to \"{}\"", key, title()));
    const A_Err fault = host.takeFault(kSendEvent);
    if (host.settings().showsCalls) host.timeline.addCall({kSendEvent}, fault);
    if (fault != A_Err_NONE) throw desktop::Exception("the window takes no events");
    isDismissed = isDismissed || (isEscape && !hasBegun);
  }

  bool hasBegun = false;     ///< its modal session
  bool isDismissed = false;  ///< before it began, so that the user doesn't see it
};

}  // namespace

bool KnowsWindowClass(const HostSettings& settings, std::string_view className) {
  return desktop::ClassFromString(std::string(className)) != nullptr ||
         std::any_of(settings.windowClasses.begin(), settings.windowClasses.end(),
                     [&](const auto& declared) { return declared.first == className; });
}

bool KnowsLanguage(std::string_view language) {
  return TitlesIn(language) != kTitles.end();
}

void Host::setUpDesktop() {
  const Titles& titles = *TitlesIn(mSettings.language);
  if (mSettings.openProjectTitle.empty()) mSettings.openProjectTitle = titles.openProject;
  if (mSettings.missingFontsTitle.empty()) {
    constexpr std::string_view kBefore114 = "After Effects";
    mSettings.missingFontsTitle = mSettings.majorVersion < 114 ? kBefore114 : titles.missingFonts;
  }
  for (const auto& [name, base] : mSettings.windowClasses) {
    mWindowClasses.emplace_back(name, desktop::ClassFromString(base));
  }
  desktop::Application::sharedApplication().setModalRunner(
      [this](desktop::Window& window) { return runModal(window); });
  desktop::SetLogSink([this](const std::string& line) {
    timeline.add(Actor::desktop, fmt::format("logs: {}", line));
  });
  desktop::Workspace& workspace = desktop::Workspace::sharedWorkspace();
  workspace.addRunningApplication({getpid(), kHostBundle});
  for (const std::string& application : mSettings.applications) addApplication(application);
  workspace.activate(getpid());
  workspace.setActivationObserver([this](const desktop::RunningApplication&) {
    timeline.add(Actor::desktop, fmt::format("{} comes to the front", frontApplication()));
    timeline.setState("front", frontApplication());
    if (isInPlugin()) timeline.record.activated.push_back(frontApplication());
  });
}

void Host::addApplication(const std::string& bundleIdentifier) {
  // Made up: no process is ever signalled.
  const int32_t id = getpid() + ++mApplications * 1'000'000;
  desktop::Workspace::sharedWorkspace().addRunningApplication({id, bundleIdentifier});
}

void Host::showDialog(const std::string& title, const std::string& className) {
  Dialog dialog(*desktop::ClassFromString(className), title);
  timeline.add(Actor::host, fmt::format("begins the dialog \"{}\"", title));
  timeline.beginDialog(title);
  dialog.makeKeyAndOrderFront();
  callPlugin("modal session", [&] {
    desktop::Application::sharedApplication().beginModalSessionForWindow(dialog);
    return A_Err{A_Err_NONE};
  });
  dialog.orderOut();
  timeline.endLast(dialog.hasBegun && !dialog.isDismissed);
  if (dialog.hasBegun) return;
  report(Finding::dialogNeverBegan, fmt::format("the dialog \"{}\" never began", title));
}

int64_t Host::runModal(desktop::Window& window) {
  static int64_t lastSession = 0;
  auto& dialog = dynamic_cast<Dialog&>(window);
  dialog.hasBegun = true;
  if (dialog.isDismissed) {
    timeline.add(Actor::desktop,
                 fmt::format("\"{}\" is gone before the user sees it", dialog.title()));
  } else {
    timeline.record.dialogsShown.push_back(dialog.title());
    timeline.add(Actor::user, fmt::format("sees \"{}\" and closes it", dialog.title()));
  }
  return ++lastSession;
}

void Host::scanFonts() {
  for (const std::string& font : ReadLines(inFolder("active-fonts"))) mKnownFonts.insert(font);
}

void Host::updateFontList() {
  scanFonts();
  ++timeline.record.fontUpdates;
  timeline.add(Actor::plugIn, "has the host scan the fonts again");
}

void Host::bringToFront(const std::string& bundleIdentifier) {
  timeline.add(Actor::user, fmt::format("turns to {}", bundleIdentifier));
  const std::string bundle = bundleIdentifier == kHostApplication ? kHostBundle : bundleIdentifier;
  desktop::Workspace& workspace = desktop::Workspace::sharedWorkspace();
  if (workspace.runningApplicationsWithBundleIdentifier(bundle).empty()) addApplication(bundle);
  workspace.activate(
      workspace.runningApplicationsWithBundleIdentifier(bundle).front().processIdentifier);
}

std::string Host::frontApplication() const {
  const std::string& bundle =
      desktop::Workspace::sharedWorkspace().frontmostApplication()->bundleIdentifier;
  return bundle == kHostBundle ? kHostApplication : bundle;
}

}  // namespace host
