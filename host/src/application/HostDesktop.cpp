#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>

#include "Dialogs.h"
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

std::string Quoted(const std::string& text) {
  return "\"" + text + "\"";
}

}  // namespace

bool KnowsWindowClass(const HostSettings& settings, std::string_view className) {
  return desktop::ClassFromString(std::string(className)) != nullptr ||
         std::any_of(settings.windowClasses.begin(), settings.windowClasses.end(),
                     [&](const auto& declared) { return declared.first == className; });
}

void Host::setUpDesktop() {
  for (const auto& [name, base] : mSettings.windowClasses) {
    mWindowClasses.emplace_back(name, desktop::ClassFromString(base));
  }
  desktop::Application::sharedApplication().setModalRunner(
      [this](desktop::Window& window) { return runModal(window); });
  desktop::SetLogSink([this](const std::string& line) {
    timeline.add(Actor::desktop, fmt::format("logs: {}", line));
  });
  mApplications[kHostBundle] = getpid();
  desktop::Workspace& workspace = desktop::Workspace::sharedWorkspace();
  workspace.addRunningApplication({getpid(), kHostBundle});
  for (const std::string& application : mSettings.applications) addApplication(application);
  workspace.activate(getpid());
  workspace.setActivationObserver([this](const desktop::RunningApplication&) {
    timeline.add(Actor::desktop, fmt::format("{} comes to the front", frontApplication()));
    timeline.setState("front", frontApplication());
    if (!mUserSwitches) timeline.record.activated.push_back(frontApplication());
  });
}

void Host::addApplication(const std::string& bundleIdentifier) {
  // Made up: no process is ever signalled.
  const int32_t id = getpid() + static_cast<int32_t>(mApplications.size()) * 1'000'000;
  mApplications[bundleIdentifier] = id;
  desktop::Workspace::sharedWorkspace().addRunningApplication({id, bundleIdentifier});
}

void Host::showOpenProjectDialog() {
  showDialog(mSettings.openProjectTitle.empty() ? OpenProjectTitle(mSettings.language)
                                                : mSettings.openProjectTitle,
             kDialogClass);
}

void Host::showMissingFontsDialog() {
  showDialog(mSettings.missingFontsTitle.empty()
                 ? MissingFontsTitle(mSettings.language, mSettings.majorVersion)
                 : mSettings.missingFontsTitle,
             kDialogClass);
}

void Host::showDialog(const std::string& title, const std::string& className) {
  DialogWindow window(
      *desktop::ClassFromString(className), title,
      [this](const DialogWindow& target, const desktop::KeyEvent& event) {
        const std::string key =
            target.isEscape(event)
                ? "Escape"
                : fmt::format("key {} for window {}", event.keyCode, event.windowNumber);
        timeline.add(Actor::plugIn, fmt::format("sends {} to {}", key, Quoted(target.title())));
        const A_Err fault = faults.take(kSendEvent);
        showCall({kSendEvent}, fault);
        if (fault == A_Err_NONE) return;
        countFailure(kSendEvent);
        throw desktop::Exception("the window takes no events");
      });
  timeline.add(Actor::host, fmt::format("begins the dialog {}", Quoted(title)));
  timeline.beginDialog(title);
  window.makeKeyAndOrderFront();
  callPlugin("modal session", [&] {
    desktop::Application::sharedApplication().beginModalSessionForWindow(window);
    return A_Err{A_Err_NONE};
  });
  window.orderOut();
  timeline.endLast(window.wasShown() ? Shown::yes : Shown::no);
  if (window.hasBegun()) return;
  report(Finding::dialogNeverBegan, fmt::format("the dialog {} never began", Quoted(title)));
}

int64_t Host::runModal(desktop::Window& window) {
  static int64_t lastSession = 0;
  auto& dialog = dynamic_cast<DialogWindow&>(window);
  dialog.begin();
  if (!dialog.wasShown()) {
    timeline.add(Actor::desktop,
                 fmt::format("{} is gone before the user sees it", Quoted(dialog.title())));
  } else {
    timeline.record.dialogsShown.push_back(dialog.title());
    timeline.add(Actor::user, fmt::format("sees {} and closes it", Quoted(dialog.title())));
  }
  return ++lastSession;
}

void Host::updateFontList() {
  for (const std::string& font : ReadLines(inFolder("active-fonts"))) mKnownFonts.insert(font);
  ++timeline.record.fontUpdates;
  timeline.add(Actor::plugIn, "has the host scan the fonts again");
}

void Host::bringToFront(const std::string& bundleIdentifier) {
  const std::string bundle = bundleIdentifier == kHostApplication ? kHostBundle : bundleIdentifier;
  if (!mApplications.contains(bundle)) addApplication(bundle);
  timeline.add(Actor::user, fmt::format("turns to {}", bundleIdentifier));
  mUserSwitches = true;
  desktop::Workspace::sharedWorkspace().activate(mApplications[bundle]);
  mUserSwitches = false;
}

std::string Host::frontApplication() const {
  const desktop::RunningApplication* front =
      desktop::Workspace::sharedWorkspace().frontmostApplication();
  if (!front) return "none";
  return front->bundleIdentifier == kHostBundle ? kHostApplication : front->bundleIdentifier;
}

}  // namespace host
