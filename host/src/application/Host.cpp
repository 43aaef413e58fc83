#include "Host.h"

#include <cxxabi.h>
#include <dlfcn.h>
#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <typeinfo>
#include <utility>

#include "Dialogs.h"
#include "TextFile.h"
#include "VirtualTime.h"
#include "desktop/Application.h"
#include "desktop/Exception.h"
#include "desktop/Log.h"
#include "desktop/Workspace.h"

namespace host {
namespace {

constexpr char kHostBundle[] = "com.adobe.AfterEffects";
constexpr AEGP_PluginID kPluginId = 1;

// At namespace scope, so that it outlives the static objects of a module that is loaded later.
Host theHost;

// Describes the exception that is being handled.
std::string DescribeException() {
  const std::type_info* type = abi::__cxa_current_exception_type();
  int status = 0;
  char* demangled = abi::__cxa_demangle(type->name(), nullptr, nullptr, &status);
  std::string name = demangled ? demangled : type->name();
  std::free(demangled);
  try {
    throw;
  } catch (const std::exception& exception) {
    return fmt::format("{}: {}", name, exception.what());
  } catch (int value) {
    return fmt::format("{} {}", name, value);
  } catch (...) {
    return name;
  }
}

std::string Quoted(const std::string& text) {
  return "\"" + text + "\"";
}

}  // namespace

Host& TheHost() {
  return theHost;
}

void Hooks::addCommandHook(const CommandHook& hook) {
  const auto place = std::find_if(command.begin(), command.end(), [&](const CommandHook& other) {
    return other.priority > hook.priority;
  });
  command.insert(place, hook);
}

Host::~Host() {
  if (!mReporter.attached()) return;
  timeline.drainRest();
  std::vector<std::string> findings = suites.findings();
  for (std::string& finding : memory.findings()) findings.push_back(std::move(finding));
  for (const std::string& finding : findings) fail("at process exit: " + finding);
  if (findings.empty()) {
    timeline.add(Actor::host,
                 fmt::format("is gone; all {} suites acquired were released, no handle "
                             "and no lock is left",
                             suites.acquisitions()));
  }
  mReporter.send(ReportKind::end, "");
}

void Host::prepare(const HostSettings& settings, const std::string& pluginModule, int reportPipe,
                   bool timelineShown) {
  mReporter.attach(reportPipe);
  mSettings = settings;
  mPluginModule = pluginModule;
  preferences = settings.preferences;
  timeline.begin(mReporter, timelineShown);
  setUpDesktop();
  for (const std::string& font : ReadLines("active-fonts")) mKnownFonts.insert(font);
}

void Host::setUpDesktop() {
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
    if (!mUserSwitches) timeline.record.activated.push_back(frontApplication());
  });
}

void Host::addApplication(const std::string& bundleIdentifier) {
  // Made up: no process is ever signalled.
  const int32_t id = getpid() + static_cast<int32_t>(mApplications.size()) * 1'000'000;
  mApplications[bundleIdentifier] = id;
  desktop::Workspace::sharedWorkspace().addRunningApplication({id, bundleIdentifier});
}

void Host::start() {
  timeline.add(Actor::host,
               fmt::format("starts, version {}.{}, language {}", mSettings.majorVersion,
                           mSettings.minorVersion, mSettings.language));
  if (!ModulesSeeVirtualTime())
    giveUp("a plug-in wouldn't see the virtual time: `time` is not ours");
  void* module = dlopen(mPluginModule.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!module) giveUp(fmt::format("the plug-in can't be loaded: {}", dlerror()));
  auto* const entry =
      reinterpret_cast<AEGP_PluginInitFuncPrototype*>(dlsym(module, "EntryPointFunc"));
  if (!entry) giveUp("the plug-in exports no EntryPointFunc");
  callPlugin("entry point", [&] {
    return entry(BasicSuite(), mSettings.majorVersion, mSettings.minorVersion, kPluginId,
                 &mGlobalRefcon);
  });
}

void Host::callPlugin(const char* what, const std::function<A_Err()>& call) {
  A_Err result = A_Err_NONE;
  try {
    result = call();
  } catch (const SessionEnded&) {
    throw;
  } catch (...) {
    giveUp(fmt::format("an exception left the plug-in's {}: {}", what, DescribeException()));
  }
  timeline.drain();
  if (result == A_Err_NONE) return;
  timeline.record.errors.push_back(fmt::format("{} {}", what, result));
  timeline.add(Actor::host,
               fmt::format("shows the plug-in's error: the {} returned {}", what, result));
}

void Host::idle() {
  ++timeline.tick;
  for (const auto& hook : hooks.idle) {
    A_long maxSleep = 0;
    callPlugin("idle hook", [&] { return hook.function(mGlobalRefcon, hook.refcon, &maxSleep); });
  }
}

void Host::drawMenus() {
  static constexpr AEGP_WindowType kNoWindow = 0;
  menus.disableAll();
  for (const auto& hook : hooks.updateMenu) {
    callPlugin("update-menu hook",
               [&] { return hook.function(mGlobalRefcon, hook.refcon, kNoWindow); });
  }
}

bool Host::runCommand(AEGP_Command command) {
  A_Boolean handled = 0;
  const auto offer = [&](AEGP_Command offered) {
    for (const CommandHook& hook : hooks.command) {
      if (hook.command != AEGP_Command_ALL && hook.command != offered) continue;
      callPlugin("command hook", [&] {
        return hook.function(mGlobalRefcon, hook.refcon, offered, hook.priority, handled, &handled);
      });
    }
    return handled != 0;
  };
  const bool wasHandled = offer(command);
  // The real host sends command 0 now and then. Here it follows each other command.
  handled = 0;
  offer(0);
  return wasHandled;
}

void Host::newProject() {
  // Made before the old one is destroyed, so that its handle differs.
  mProject = std::make_unique<Project>();
  timeline.add(Actor::host, "has a new project without a path");
}

A_Err Host::openProject(const std::string& path) {
  if (!std::filesystem::is_regular_file(path)) {
    timeline.add(Actor::host, fmt::format("finds no project {}", path));
    return A_Err_GENERIC;
  }
  auto opened = std::make_unique<Project>();
  opened->path = path;
  opened->reportedPath = std::filesystem::path(path).u16string();
  opened->fonts = ReadLines(path);
  std::copy_if(opened->fonts.begin(), opened->fonts.end(), std::back_inserter(opened->missingFonts),
               [&](const std::string& font) { return !mKnownFonts.contains(font); });
  mProject = std::move(opened);
  if (mProject->missingFonts.empty()) {
    timeline.add(Actor::host, fmt::format("opens {} with all its fonts", path));
    return A_Err_NONE;
  }
  timeline.add(Actor::host,
               fmt::format("opens {}, which lacks {}", path, Join(mProject->missingFonts, ", ")));
  showDialog(MissingFontsTitle(mSettings.language, mSettings.majorVersion),
             *desktop::ClassFromString(kDialogClass));
  return A_Err_NONE;
}

void Host::saveProject(const std::string& path) {
  WriteLines(path, mProject->fonts);
  SetModificationDate(path, VirtualNow());
  mProject->path = path;
  mProject->reportedPath = std::filesystem::path(path).u16string();
  mProject->dirty = false;
  timeline.add(Actor::host, fmt::format("has written {}", path));
}

void Host::showDialog(const std::string& title, const desktop::WindowClass& windowClass) {
  DialogWindow window(
      windowClass, title, [this](const DialogWindow& target, const desktop::KeyEvent& event) {
        const std::string key =
            target.isEscape(event)
                ? "Escape"
                : fmt::format("key {} for window {}", event.keyCode, event.windowNumber);
        timeline.add(Actor::plugIn, fmt::format("sends {} to {}", key, Quoted(target.title())));
        if (faults.take(kSendEvent)) throw desktop::Exception("the window takes no events");
      });
  timeline.add(Actor::host, fmt::format("begins the dialog {}", Quoted(title)));
  window.makeKeyAndOrderFront();
  callPlugin("modal session", [&] {
    desktop::Application::sharedApplication().beginModalSessionForWindow(window);
    return A_Err_NONE;
  });
  window.orderOut();
  if (!window.hasBegun()) fail(fmt::format("the dialog {} never began", Quoted(title)));
}

int64_t Host::runModal(desktop::Window& window) {
  static int64_t lastSession = 0;
  auto& dialog = dynamic_cast<DialogWindow&>(window);
  dialog.begin();
  if (dialog.isDismissed()) {
    timeline.add(Actor::desktop,
                 fmt::format("{} is gone before the user sees it", Quoted(dialog.title())));
  } else {
    timeline.record.dialogsShown.push_back(dialog.title());
    timeline.add(Actor::user, fmt::format("sees {} and closes it", Quoted(dialog.title())));
  }
  return ++lastSession;
}

void Host::updateFontList() {
  for (const std::string& font : ReadLines("active-fonts")) mKnownFonts.insert(font);
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

void Host::quit() {
  timeline.add(Actor::host, "shuts down");
  for (const auto& hook : hooks.death) {
    callPlugin("death hook", [&] { return hook.function(mGlobalRefcon, hook.refcon); });
  }
}

void Host::giveUp(const std::string& what) const {
  fail(what);
  throw SessionEnded{};
}

const std::string* Host::findPreference(const std::string& section, const std::string& key) const {
  const auto entries = preferences.find(section);
  if (entries == preferences.end()) return nullptr;
  const auto entry = entries->second.find(key);
  return entry == entries->second.end() ? nullptr : &entry->second;
}

void Host::noteRefusal(const std::string& text) {
  if (mRefusals.insert(text).second) timeline.add(Actor::host, text);
}

}  // namespace host
