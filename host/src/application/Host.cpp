#include "Host.h"

#include <dlfcn.h>
#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <thread>
#include <utility>

#include "Backtrace.h"
#include "TextFile.h"
#include "VirtualTime.h"

namespace host {
namespace {

// Each is a folder there. Only differences count, so that its other links don't matter.
std::uintmax_t CountThreads() {
  return std::filesystem::hard_link_count("/proc/self/task");
}

}  // namespace

Host& TheHost() {
  static Host& host = *new Host;
  return host;
}

void Host::prepare(const HostSettings& settings, const PluginModule& module, int pipe,
                   FlightRecord& flight) {
  mSettings = settings;
  mModule = module;
  mFlight = &flight;
  timeline.begin(pipe, flight);
  mFolder = std::filesystem::current_path();
  mThreads = CountThreads();
  preferences = settings.preferences;
  advanceTime(0);
  WatchFileDates(mFolder);
  setUpDesktop();
  replaceProject({});
  scanFonts();
  showProject();
  timeline.setState("front", frontApplication());
}

void Host::start() {
  timeline.add(Actor::host,
               fmt::format("starts, version {}.{}, language {}", mSettings.majorVersion,
                           mSettings.minorVersion, mSettings.language));
  void* module = nullptr;
  callPlugin("static constructor", [&] {
    module = dlopen(mModule.path.c_str(), RTLD_NOW | RTLD_LOCAL);
    return A_Err{A_Err_NONE};
  });
  auto* const entry = reinterpret_cast<AEGP_PluginInitFuncPrototype*>(
      module ? dlsym(module, mModule.entryPoint.c_str()) : nullptr);
  if (!entry) {
    const std::string why =
        module ? "exports no " + mModule.entryPoint : fmt::format("can't be loaded: {}", dlerror());
    timeline.tell(EventKind::unloadable, fmt::format("{} {}", mModule.path, why));
    throw SessionEnded{};
  }
  callPlugin(kEntryPoint, [&] {
    return entry(BasicSuite(), mSettings.majorVersion, mSettings.minorVersion, kPluginId,
                 &mGlobalRefcon);
  });
}

void Host::enterPlugin(const char* hook) {
  if (!isInPlugin()) {
    ++mVisit;
    mFlight->watchdogStart = MonotonicNow();
  }
  mCalls.push_back(hook);
  timeline.beginHook(hook);
  mFlight->inHostCall = false;
  mFlight->hook = hook;
}

void Host::leavePlugin() {
  if (mCalls.size() == 1 && std::exchange(undoGroups, 0) > 0) {
    report(Finding::unbalancedUndoGroup, "an undo group is started and not ended");
  }
  mCalls.pop_back();
  mFlight->hook = isInPlugin() ? mCalls.back() : "";
  if (isInPlugin()) return;
  mFlight->watchdogStart = MonotonicNow();
  mNestsTooDeep = false;
}

bool Host::isIn(const char* hook) const {
  return std::find(mCalls.begin(), mCalls.end(), hook) != mCalls.end();
}

void Host::callPlugin(const char* hook, const std::function<A_Err()>& call) {
  const bool isOutermost = !isInPlugin();
  A_Err result = A_Err_NONE;
  enterPlugin(hook);
  try {
    result = call();
  } catch (...) {
    report(Finding::exception,
           fmt::format("an exception leaves the plug-in's {}: {}", hook, DescribeException()));
    mEnding = true;
  }
  // There would be two hosts.
  if (mFlight->isOfFork) _exit(EXIT_FAILURE);
  // Not through the plug-in's frames: it might catch it.
  if (mEnding && isOutermost) throw SessionEnded{};
  // What is told before it leaves the hook is of this hook.
  if (result != A_Err_NONE) {
    ++errorsShown;
    const std::string error = fmt::format("{} {}", hook, result);
    report(Finding::hookError, "the user saw an error that no step expects: " + error,
           {{}, {}, error}, result);
  }
  // Most hooks write nothing, and then there is nothing to take in.
  if (UpdateFileDates()) timeline.drain();
  leavePlugin();
  timeline.endLast();
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
  afterTick();
}

void Host::advanceTime(int64_t seconds) {
  AdvanceVirtualTime(seconds);
  mFlight->time = VirtualNow();
}

void Host::pause(std::chrono::milliseconds time) {
  const WatchdogPause pause(*mFlight);
  std::this_thread::sleep_for(time);
  timeline.drain();
}

void Host::drawMenus() {
  static constexpr AEGP_WindowType kNoWindow = 0;
  for (auto& [command, item] : menus.items) item.enabled = false;
  for (const auto& hook : hooks.updateMenu) {
    callPlugin(kUpdateMenuHook,
               [&] { return hook.function(mGlobalRefcon, hook.refcon, kNoWindow); });
  }
}

bool Host::runCommand(AEGP_Command command) {
  A_Boolean handled = 0;
  const auto offer = [&](AEGP_Command offered) {
    // A copy, because a hook that the entry point has called can register another.
    const std::vector<CommandHook> registered = hooks.command;
    for (const CommandHook& hook : registered) {
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
  SetText(mFlight->step, place);
  mFlight->watchdogStart = MonotonicNow();
}

void Host::beginDestructors() {
  timeline.drain();
  timeline.endAll();
  // An exception may have left some of them.
  mCalls.clear();
  mFlight->hook = "";
  enterPlugin(kStaticDestructor);
}

void Host::finish() {
  timeline.drain();
  timeline.endAll();
  leavePlugin();
  mIsOver = true;
  if (CountThreads() > mThreads) {
    report(Finding::threadLeft, "a thread that the plug-in has started still runs");
  }
  reportLeaks();
}

}  // namespace host
