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
#include <thread>
#include <typeinfo>
#include <utility>

#include "Backtrace.h"
#include "Dialogs.h"
#include "TextFile.h"
#include "VirtualTime.h"
#include "desktop/Application.h"
#include "desktop/Exception.h"
#include "desktop/Log.h"
#include "desktop/Workspace.h"

namespace host {
namespace {

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

}  // namespace

Host& TheHost() {
  static Host& host = *new Host;
  return host;
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
  preferences = settings.preferences;
  timeline.begin(mWire, flight);
  fileDates.watch(mFolder);
  setUpDesktop();
  for (const std::string& font : ReadLines(inFolder("active-fonts"))) mKnownFonts.insert(font);
  noteProject();
  timeline.setState("front", frontApplication());
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

void Host::pause(std::chrono::milliseconds time) {
  const WatchdogPause pause(*mFlight);
  std::this_thread::sleep_for(time);
  timeline.drain();
}

void Host::drawMenus() {
  static constexpr AEGP_WindowType kNoWindow = 0;
  for (auto& [command, item] : menus.items) item.enabled = false;
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

}  // namespace host
