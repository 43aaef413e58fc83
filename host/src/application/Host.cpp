#include "Host.h"

#include <cxxabi.h>
#include <dlfcn.h>
#include <fmt/format.h>
#include <unistd.h>
#include <utf8.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <typeinfo>
#include <utility>

#include "Backtrace.h"
#include "Dialogs.h"
#include "SuiteCall.h"
#include "TextFile.h"
#include "VirtualTime.h"
#include "desktop/Application.h"
#include "desktop/Exception.h"
#include "desktop/Log.h"
#include "desktop/Workspace.h"

namespace host {
namespace {

constexpr char kHostBundle[] = "com.adobe.AfterEffects";

// Describes the exception that is being handled.
std::string DescribeException() {
  const std::type_info* type = abi::__cxa_current_exception_type();
  if (!type) return "one that isn't of C++";
  int status = 0;
  char* demangled = abi::__cxa_demangle(type->name(), nullptr, nullptr, &status);
  std::string name = demangled ? demangled : type->name();
  std::free(demangled);
  try {
    throw;
  } catch (const std::exception& exception) {
    return fmt::format("{}: {}", name, EscapeControls(exception.what()));
  } catch (int value) {
    return fmt::format("{} {}", name, value);
  } catch (...) {
    return name;
  }
}

size_t CountThreads() {
  const std::filesystem::directory_iterator tasks("/proc/self/task");
  return static_cast<size_t>(std::distance(begin(tasks), end(tasks)));
}

std::string Quoted(const std::string& text) {
  return "\"" + text + "\"";
}

Actor ActorOf(Finding finding) {
  const bool isOfSession = finding == Finding::expectation || finding == Finding::setup;
  return isOfSession ? Actor::session : Actor::plugIn;
}

}  // namespace

std::optional<std::string> ToUTF8(const A_UTF16Char* text) {
  const A_UTF16Char* end = text;
  while (*end != 0) ++end;
  std::string utf8;
  try {
    utf8::utf16to8(text, end, std::back_inserter(utf8));
  } catch (const utf8::invalid_utf16&) {
    return {};
  }
  return utf8;
}

bool KnowsWindowClass(const HostSettings& settings, std::string_view className) {
  return desktop::ClassFromString(std::string(className)) != nullptr ||
         std::any_of(settings.windowClasses.begin(), settings.windowClasses.end(),
                     [&](const auto& declared) { return declared.first == className; });
}

Host& TheHost() {
  static Host& host = *new Host;
  return host;
}

void Hooks::addCommandHook(const CommandHook& hook) {
  const auto place = std::find_if(command.begin(), command.end(), [&](const CommandHook& other) {
    return other.priority > hook.priority;
  });
  command.insert(place, hook);
}

void Host::finish() {
  timeline.drainRest();
  timeline.endAll();
  for (const auto& check : mFinalChecks) check();
  if (undoGroups > 0) {
    report(Finding::unbalancedUndoGroup, "an undo group is started and not ended");
  }
  if (CountThreads() > mThreads) {
    report(Finding::threadLeft, "a thread that the plug-in has started still runs");
  }
  reportLeaks();
  timeline.tell(EventKind::finished);
}

void Host::reportLeaks() {
  bool isClean = true;
  const auto report = [&](Finding finding, const std::string& what, const Origin& origin) {
    isClean = false;
    tell(finding, fmt::format("{} is left, from {}", what, origin.text()),
         {origin.function, what, {}}, "at the end of the process");
  };
  for (const auto& [suite, origin] : ledger.held(Holding::suite)) {
    report(Finding::suiteLeaked, NameOfTable(suite), origin);
  }
  for (const auto& [thing, origin] : ledger.held(Holding::memoryHandle)) {
    const auto handle = static_cast<AEGP_MemHandle>(const_cast<void*>(thing));
    report(Finding::handleLeaked,
           memory.isLocked(handle) ? "a locked memory handle" : "a memory handle", origin);
  }
  for (const auto& [block, origin] : ledger.held(Holding::block)) {
    report(Finding::blockLeaked, "a block", origin);
  }
  if (!isClean) return;
  timeline.add(Actor::host,
               fmt::format("is gone; all {} suites acquired were released, no handle and no lock "
                           "is left",
                           ledger.given(Holding::suite)));
}

void Host::prepare(const HostSettings& settings, const PluginModule& module, int reportPipe,
                   FlightRecord& flight) {
  mWire.attach(reportPipe, flight);
  mSettings = settings;
  mModule = module;
  mFlight = &flight;
  mFlight->time = timeline.time = VirtualNow();
  mMainThread = pthread_self();
  mFolder = std::filesystem::current_path();
  mThreads = CountThreads();
  preferences.reset(settings.preferences);
  timeline.begin(mWire, flight);
  fileDates.watch(mFolder);
  setUpDesktop();
  for (const std::string& font : ReadLines(inFolder("active-fonts"))) mKnownFonts.insert(font);
  noteProject();
  timeline.setState("front", frontApplication());
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

void* Host::loadModule() {
  if (!ModulesSeeVirtualTime()) {
    giveUp(Finding::setup, "a plug-in wouldn't see the virtual time: another library defines it");
  }
  void* module = nullptr;
  callPlugin("static constructor", [&] {
    module = dlopen(mModule.path.c_str(), RTLD_NOW | RTLD_LOCAL);
    return A_Err{A_Err_NONE};
  });
  if (!module) failToLoad(fmt::format("can't be loaded: {}", dlerror()));
  return module;
}

void Host::start() {
  timeline.add(Actor::host,
               fmt::format("starts, version {}.{}, language {}", mSettings.majorVersion,
                           mSettings.minorVersion, mSettings.language));
  auto* const entry = reinterpret_cast<AEGP_PluginInitFuncPrototype*>(
      dlsym(loadModule(), mModule.entryPoint.c_str()));
  if (!entry) {
    failToLoad(fmt::format("exports no {}", mModule.entryPoint));
  }
  mStarting = true;
  callPlugin("entry point", [&] {
    return entry(BasicSuite(), mSettings.majorVersion, mSettings.minorVersion, kPluginId,
                 &mGlobalRefcon);
  });
  mStarting = false;
}

void Host::enterPlugin(const char* hook) {
  if (*mHook == '\0') {
    ++mVisit;
    mFlight->watchdogStart = MonotonicNow();
  }
  ++mDepth;
  mHook = hook;
  mFlight->inHostCall = false;
  mFlight->hook = hook;
  timeline.beginHook(hook);
}

void Host::leavePlugin(const char* outerHook) {
  mHook = outerHook;
  mFlight->hook = outerHook;
  --mDepth;
  if (*outerHook != '\0') return;
  mFlight->watchdogStart = MonotonicNow();
  mNestsTooDeep = false;
}

void Host::callPlugin(const char* hook, const std::function<A_Err()>& call) {
  const char* const outerHook = mHook;
  A_Err result = A_Err_NONE;
  enterPlugin(hook);
  try {
    result = call();
  } catch (const abi::__forced_unwind&) {
    report(Finding::exception, fmt::format("the plug-in's {} ends its thread", hook));
    throw;
  } catch (...) {
    report(Finding::exception,
           fmt::format("an exception leaves the plug-in's {}: {}", hook, DescribeException()));
    mEnding = true;
  }
  // There would be two hosts.
  if (mFlight->isOfFork) _exit(EXIT_FAILURE);
  // Not through the plug-in's frames: it might catch it.
  if (mEnding && *outerHook == '\0') throw SessionEnded{};
  if (*outerHook == '\0' && std::exchange(undoGroups, 0) > 0) {
    report(Finding::unbalancedUndoGroup, "an undo group is started and not ended");
  }
  // Before it leaves the hook, for `where`.
  if (result != A_Err_NONE) reportError(hook, result);
  // What it drains is of this hook, for `where`.
  timeline.drain();
  leavePlugin(outerHook);
  timeline.endLast();
  fileDates.update();
  if (result == A_Err_NONE) return;
  timeline.add(Actor::host,
               fmt::format("shows the plug-in's error: the {} returned {}", hook, result));
}

void Host::reportError(const char* hook, A_Err result) {
  ++mErrorsShown;
  const std::string error = fmt::format("{} {}", hook, result);
  tell(Finding::hookError, "the user saw an error that no step expects: " + error, {{}, {}, error},
       where(), result);
}

void Host::idle() {
  mFlight->tick = ++timeline.tick;
  for (const auto& hook : hooks.idle) {
    A_long maxSleep = 0;
    callPlugin("idle hook", [&] { return hook.function(mGlobalRefcon, hook.refcon, &maxSleep); });
  }
}

void Host::advanceTime(int64_t seconds) {
  AdvanceVirtualTime(seconds);
  mFlight->time = timeline.time = VirtualNow();
}

void Host::drawMenus() {
  static constexpr AEGP_WindowType kNoWindow = 0;
  menus.disableAll();
  const bool wasUpdating = std::exchange(mUpdatingMenus, true);
  for (const auto& hook : hooks.updateMenu) {
    callPlugin("update-menu hook",
               [&] { return hook.function(mGlobalRefcon, hook.refcon, kNoWindow); });
  }
  mUpdatingMenus = wasUpdating;
}

bool Host::runCommand(AEGP_Command command) {
  A_Boolean handled = 0;
  const auto offer = [&](AEGP_Command offered) {
    // A copy, because a hook may register further ones.
    const std::vector<CommandHook> offeredTo = hooks.command;
    for (const CommandHook& hook : offeredTo) {
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

void Host::setProject(std::unique_ptr<Project> project) {
  mProject = std::move(project);
  mProject->handle = &mProjectSlots[mNextSlot];
  mNextSlot = (mNextSlot + 1) % mProjectSlots.size();
  ledger.give(Holding::project, mProject->handle, {"", mHook, timeline.tick});
}

void Host::replaceProject(std::unique_ptr<Project> project) {
  const ProjectChange change{mProject->path, project->path, *mHook != '\0'};
  if (change.byPlugin && mProject->dirty) reportLostWork(change);
  if (change.byPlugin) mPluginHasClosed = change.opened.empty();
  ledger.takeBack(Holding::project, mProject->handle);
  setProject(std::move(project));
  for (const auto& listener : mProjectListeners) listener(change);
}

void Host::reportLostWork(const ProjectChange& change) {
  const std::string closed = change.closed.empty() ? "a project without a path" : change.closed;
  const std::string function(timeline.call ? timeline.call->function : "");
  if (change.opened.empty()) {
    report(Finding::unsavedWorkLost,
           fmt::format("the plug-in closes {}, which has unsaved changes", closed),
           {function, {}, {}});
  } else {
    report(Finding::unsavedWorkLost,
           fmt::format("the plug-in opens {} in place of {}, which has unsaved changes{}",
                       change.opened, closed,
                       mPluginHasClosed ? "; it had closed a project before" : ""),
           {function, mPluginHasClosed ? "closed before" : "", {}});
  }
}

void Host::noteProject() {
  timeline.setState("project", mProject->path.empty() ? "none" : mProject->path);
  timeline.setState("dirty", mProject->dirty ? "true" : "false");
}

void Host::newProject() {
  replaceProject(std::make_unique<Project>());
  timeline.add(Actor::host, "has a new project without a path");
  noteProject();
}

void Host::editProject() {
  timeline.add(Actor::user, "edits the project");
  mProject->dirty = true;
  noteProject();
}

A_Err Host::openProject(const std::string& path) {
  std::error_code ignored;
  if (!std::filesystem::is_regular_file(path, ignored)) {
    timeline.add(Actor::host, fmt::format("finds no project {}", path));
    return A_Err_GENERIC;
  }
  auto opened = std::make_unique<Project>();
  opened->path = path;
  opened->reportedPath = std::filesystem::path(path).u16string();
  opened->fonts = ReadLines(path);
  std::copy_if(opened->fonts.begin(), opened->fonts.end(), std::back_inserter(opened->missingFonts),
               [&](const std::string& font) { return !mKnownFonts.contains(font); });
  replaceProject(std::move(opened));
  if (mProject->missingFonts.empty()) {
    timeline.add(Actor::host, fmt::format("opens {} with all its fonts", path));
    noteProject();
    return A_Err_NONE;
  }
  timeline.add(Actor::host,
               fmt::format("opens {}, which lacks {}", path, Join(mProject->missingFonts, ", ")));
  noteProject();
  showMissingFontsDialog();
  return A_Err_NONE;
}

void Host::saveProject(const std::string& path) {
  WriteLines(path, mProject->fonts);
  SetModificationDate(path, VirtualNow());
  // `path` may be the project's own.
  const std::string before = mProject->path;
  mProject->path = path;
  mProject->reportedPath = std::filesystem::path(path).u16string();
  mProject->dirty = false;
  timeline.add(Actor::host, fmt::format("has written {}", path));
  noteProject();
  if (before == path) return;
  for (const auto& listener : mProjectListeners) listener({before, path, *mHook != '\0', true});
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

void Host::quit() {
  timeline.add(Actor::host, "shuts down");
  for (const auto& hook : hooks.death) {
    callPlugin("death hook", [&] { return hook.function(mGlobalRefcon, hook.refcon); });
  }
}

void Host::beginStep(std::string_view place) {
  Note(mFlight->step, place);
  mFlight->stepNumber = mFlight->stepsPlayed + 1;
  mFlight->watchdogStart = MonotonicNow();
  timeline.beginStep(place);
}

void Host::endSteps() const {
  timeline.tell(EventKind::played);
}

void Host::beginDestructors() {
  timeline.drain();
  timeline.endAll();
  mIsGone = true;
  enterPlugin("static destructor");
  mFlight->watchdogStart = MonotonicNow();
  timeline.tell(EventKind::destroying);
}

std::string Host::inFolder(const std::string& path) const {
  return (mFolder / path).string();
}

std::string Host::where() const {
  return fmt::format("in the {}, tick {}, host call {}, step {}", *mHook ? mHook : "host itself",
                     timeline.tick, mFlight->hostCall[0] ? mFlight->hostCall.data() : "none",
                     mFlight->step.data());
}

void Host::tell(Finding finding, std::string text, FactNames names, std::string where,
                int64_t code) {
  Event fact(timeline.head(ActorOf(finding)));
  fact.kind = EventKind::fact;
  fact.finding = finding;
  fact.text = std::move(text);
  fact.names = std::move(names);
  fact.where = std::move(where);
  fact.code = code;
  fact.visit = mVisit;
  timeline.addFact(std::move(fact));
}

void Host::expectFacts(const std::string& key, const std::string& place,
                       std::vector<std::string> texts) {
  Event expect(timeline.head(Actor::session));
  expect.kind = EventKind::expect;
  expect.name = key;
  expect.where = place;
  expect.texts = std::move(texts);
  timeline.addFact(std::move(expect));
}

void Host::countFailure(std::string_view function) {
  ++mFailures;
  Event failure(timeline.head(Actor::session));
  failure.kind = EventKind::failure;
  failure.name = function;
  mWire.send(failure);
}

void Host::countAnswer(A_Err error) {
  // Nobody else excuses what an answer may have caused.
  if (!mSettings.tolerant) return;
  Event answer(timeline.head(Actor::host));
  answer.kind = EventKind::answer;
  answer.code = error;
  answer.visit = mVisit;
  mWire.send(answer);
}

void Host::showCall(const RunningCall& running, A_Err result) {
  if (mSettings.showsCalls) timeline.addCall(running, result);
}

bool Host::refusesMoreHooks() {
  constexpr int kMaxDepth = 100;
  if (mNestsTooDeep) return true;
  if (mDepth < kMaxDepth) return false;
  mNestsTooDeep = true;
  SuiteCall::current().misused(
      Finding::nestedTooDeep,
      fmt::format("{} calls of hooks are under way, each within the one before", kMaxDepth));
  return true;
}

A_Err Host::reportFromOtherThread(SuiteId suite, std::string_view function) const {
  // Only what is the same for all threads, or may be read by any.
  Event fact(HeadForThread(*mFlight));
  fact.kind = EventKind::fact;
  fact.finding = Finding::wrongThread;
  fact.names.function = function;
  fact.text = fmt::format("{} of {}: called from another thread", function, NameOf(suite));
  const char* const hook = mFlight->hook;
  fact.where = fmt::format("while the main thread was in the {}, tick {}",
                           *hook ? hook : "host itself", fact.tick);
  for (const std::string& frame : Backtrace()) fact.where += "\n    " + frame;
  mWire.send(fact);
  return PF_Err_BAD_CALLBACK_PARAM;
}

void Host::giveUp(Finding finding, const std::string& text) {
  report(finding, text);
  throw SessionEnded{};
}

void Host::failToLoad(const std::string& why) const {
  timeline.tell(EventKind::unloadable, fmt::format("{} {}", mModule.path, why));
  throw SessionEnded{};
}

void Host::noteOnce(Actor actor, const std::string& text) {
  if (mNotes.insert(text).second) timeline.add(actor, text);
}

}  // namespace host
