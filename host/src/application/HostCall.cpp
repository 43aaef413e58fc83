#include "HostCall.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "Host.h"
#include "TextFile.h"

namespace host {

HostCall::~HostCall() {
  if (!mOnMainThread) return;
  TheHost().timeline.call = mOuter;
  TheHost().flight().inHostCall = false;
}

void HostCall::begin() {
  mOnMainThread = TheHost().isMainThread();
  if (mOnMainThread) mOuter = std::exchange(TheHost().timeline.call, &mRunning);
  append(mFunction.name);
  append("(");
  if (mOnMainThread) TheHost().flight().inHostCall = true;
}

// Leaves room for the end. Ends the text each time, because a wrong pointer can crash the next.
void HostCall::append(std::string_view text) {
  if (!mOnMainThread) return;
  auto& field = TheHost().flight().hostCall;
  const size_t room = field.size() - 2 - mWritten;
  mWritten += text.copy(field.data() + mWritten, std::min(room, text.size()));
  field[mWritten] = '\0';
}

void HostCall::write(int64_t number) {
  const fmt::format_int text(number);
  append({text.data(), text.size()});
  append(", ");
}

void HostCall::write(double number) {
  append(fmt::format("{}, ", number));
}

void HostCall::write(const char* text) {
  if (!text) return append("null, ");
  append("\"");
  append(EscapeControls(text));
  append("\", ");
}

void HostCall::write(const void* pointer) {
  append(pointer ? "pointer, " : "null, ");
}

void HostCall::finish(SuiteId suite) {
  if (!mOnMainThread) {
    TheHost().reportFromOtherThread(mFunction.name);
    mError = PF_Err_BAD_CALLBACK_PARAM;
    return;
  }
  auto& field = TheHost().flight().hostCall;
  if (field[mWritten - 1] == ' ') mWritten -= 2;
  field[mWritten] = ')';
  field[mWritten + 1] = '\0';
  if (TheHost().suites.isAcquired(suite)) return;
  misused(Finding::releasedSuite, "its suite isn't acquired");
  mError = PF_Err_BAD_CALLBACK_PARAM;
}

bool HostCall::needs(const void* argument, const char* name) {
  if (!argument) misused(Finding::nullArgument, fmt::format("{} is null", name));
  return argument != nullptr;
}

bool HostCall::needsPluginId(AEGP_PluginID id) {
  if (id == kPluginId) return true;
  misused(Finding::wrongPluginId, fmt::format("the plug-in's id is {}, not {}", kPluginId, id));
  return false;
}

bool HostCall::needsProject(AEGP_ProjectH project) {
  if (!needs(project, "projH")) return false;
  if (!mOnMainThread || project == TheHost().project().handle()) return true;
  if (TheHost().wasProject(project)) {
    misused(Finding::staleProject, "the project was closed");
  } else {
    misused(Finding::unknownHandle, "there is no such project");
  }
  return false;
}

bool HostCall::needsMemory(AEGP_MemHandle handle) {
  if (!needs(handle, "memH")) return false;
  if (!mOnMainThread || TheHost().memory.holds(handle)) return true;
  const Origin* const freed = TheHost().memory.freed(handle);
  misused(Finding::unknownHandle, freed ? "the handle was freed before; it is from " + freed->text()
                                        : "there is no such handle");
  return false;
}

bool HostCall::needsPreferences(AEGP_PersistentBlobH blob) {
  if (!needs(blob, "blobPH")) return false;
  if (blob == TheHost().preferences.handle()) return true;
  misused(Finding::unknownHandle, "there are no such preferences");
  return false;
}

bool HostCall::needsMenuItem(AEGP_Command command) {
  if (!mOnMainThread || TheHost().menus.has(command)) return true;
  // The host refused the item. The plug-in may not have noticed.
  if (TheHost().menus.wasRefused(command)) {
    mError = A_Err_GENERIC;
    return false;
  }
  misused(Finding::unknownCommand, fmt::format("no menu item has the command {}", command));
  return false;
}

bool HostCall::needsDepthForHooks() {
  constexpr int kMost = 100;
  Host& host = TheHost();
  if (!mOnMainThread || (!host.nestsTooDeep && host.depth() < kMost)) return true;
  mError = A_Err_GENERIC;
  // All further calls are refused until the outermost hook returns. A hook that makes two would
  // double them at each depth.
  if (!std::exchange(host.nestsTooDeep, true)) {
    misused(Finding::nestedTooDeep, fmt::format("{} calls of hooks are under way, each within the "
                                                "one before",
                                                kMost));
  }
  return false;
}

void HostCall::misused(Finding finding, std::string_view what) {
  if (KindOf(finding).level == Level::error) mError = A_Err_GENERIC;
  if (!mOnMainThread) return;
  // On one line, whatever the plug-in passed.
  TheHost().reportMisuse(finding, fmt::format("{}: {}", mFunction.name, EscapeControls(what)));
}

A_Err HostCall::error() {
  if (mError == A_Err_NONE) return fault();
  if (mOnMainThread) TheHost().noteAnswer(mError);
  return mError;
}

A_Err HostCall::fault() {
  if (!mOnMainThread) return A_Err_NONE;
  TheHost().census.count(mFunction.name);
  const A_Err result = TheHost().faults.take(mFunction);
  if (result != A_Err_NONE) {
    TheHost().noteFailure(mFunction.name);
    TheHost().noteAnswer(result);
    TheHost().timeline.add(Actor::host, fmt::format("{} fails with {}", mFunction.name, result));
  }
  return result;
}

}  // namespace host
