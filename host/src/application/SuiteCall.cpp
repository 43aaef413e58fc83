#include "SuiteCall.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>
#include <variant>

#include "Host.h"
#include "TextFile.h"

namespace host {
namespace {

SuiteCall* innermost = nullptr;

}  // namespace

SuiteCall& SuiteCall::current() {
  return *innermost;
}

void SuiteCall::begin() {
  mOuterCall = std::exchange(innermost, this);
  mOuter = std::exchange(TheHost().timeline.call, &mRunning);
  append(mRunning.function);
  append("(");
  TheHost().flight().inHostCall = true;
  for (size_t i = 0; i < mRunning.count; ++i) {
    if (i > 0) append(", ");
    appendValue(mRunning.arguments[i]);
  }
  append(")");
}

SuiteCall::~SuiteCall() {
  innermost = mOuterCall;
  TheHost().timeline.call = mOuter;
  TheHost().flight().inHostCall = false;
}

// Ends the text each time, because a wrong pointer can crash the next.
void SuiteCall::append(std::string_view text) {
  auto& field = TheHost().flight().hostCall;
  const size_t room = field.size() - 1 - mWritten;
  mWritten += text.copy(field.data() + mWritten, std::min(room, text.size()));
  field[mWritten] = '\0';
}

void SuiteCall::appendValue(const RunningCall::Value& value) {
  if (const auto* const number = std::get_if<int64_t>(&value)) {
    const fmt::format_int text(*number);
    append({text.data(), text.size()});
  } else if (const auto* const real = std::get_if<double>(&value)) {
    append(fmt::format("{}", *real));
  } else if (const auto* const text = std::get_if<const char*>(&value); text && *text) {
    append("\"");
    append(EscapeControls(*text));
    append("\"");
  } else {
    const auto* const pointer = std::get_if<const void*>(&value);
    append(pointer && *pointer ? "pointer" : "null");
  }
}

void SuiteCall::checkSuite(SuiteId suite) {
  if (suite == SuiteId::basic || TheHost().ledger.holds(Holding::suite, TableOf(suite))) return;
  misused(Finding::releasedSuite, "its suite isn't acquired");
  mError = PF_Err_BAD_CALLBACK_PARAM;
}

void SuiteCall::checkIsInTime() {
  if (!TheHost().isGone()) return;
  misused(Finding::calledTooLate, "the host has shut down");
}

void SuiteCall::needs(const void* argument, const char* name) {
  if (!argument) misused(Finding::nullArgument, fmt::format("{} is null", name), name);
}

void SuiteCall::needsPluginId(AEGP_PluginID id) {
  if (id == kPluginId) return;
  misused(Finding::wrongPluginId, fmt::format("the plug-in's id is {}, not {}", kPluginId, id));
}

void SuiteCall::needsProject(AEGP_ProjectH project, const char* name) {
  if (!project) return needs(project, name);
  if (project == TheHost().project().handle) return;
  if (TheHost().ledger.takenBack(Holding::project, project)) {
    misused(Finding::staleProject, "the project was closed");
  } else {
    misused(Finding::unknownHandle, "there is no such project");
  }
}

void SuiteCall::needsMemory(AEGP_MemHandle handle, const char* name) {
  if (!handle) return needs(handle, name);
  if (TheHost().ledger.holds(Holding::memoryHandle, handle)) {
    if (!TheHost().memory.isIntact(handle)) reportOverrun("the handle");
    return;
  }
  const Origin* const freed = TheHost().ledger.takenBack(Holding::memoryHandle, handle);
  misused(Finding::unknownHandle, freed ? "the handle was freed before; it is from " + freed->text()
                                        : "there is no such handle");
}

void SuiteCall::needsPreferences(AEGP_PersistentBlobH blob, const char* name) {
  if (!blob) return needs(blob, name);
  if (blob == TheHost().preferences.handle()) return;
  misused(Finding::unknownHandle, "there are no such preferences");
}

void SuiteCall::needsMenuItem(AEGP_Command command) {
  if (TheHost().menus.has(command)) return;
  // The host refused the item. The plug-in may not have noticed.
  if (TheHost().menus.wasRefused(command)) {
    mError = A_Err_GENERIC;
  } else {
    misused(Finding::unknownCommand, fmt::format("no menu item has the command {}", command));
  }
}

void SuiteCall::needsBlock(void* block, const char* name) {
  if (!block) return needs(block, name);
  if (TheHost().ledger.holds(Holding::block, block)) {
    if (!TheHost().memory.isIntact(block)) reportOverrun("the block");
    return;
  }
  const Origin* const freed = TheHost().ledger.takenBack(Holding::block, block);
  misused(Finding::unknownBlock, freed ? "the block was freed before; it is from " + freed->text()
                                       : "there is no such block");
}

// The call goes on: what it gives back would be left otherwise.
void SuiteCall::reportOverrun(const char* what) {
  misused(Finding::overrun, fmt::format("the plug-in has written past the end of {}", what));
  mError = A_Err_NONE;
}

A_Err SuiteCall::misused(Finding finding, std::string_view what, std::string detail) {
  if (KindOf(finding).level == Level::error) mError = A_Err_GENERIC;
  // On one line, whatever the plug-in passed.
  TheHost().report(finding, fmt::format("{}: {}", mRunning.function, EscapeControls(what)),
                   {std::string(mRunning.function), std::move(detail), {}});
  return mError;
}

A_Err SuiteCall::fault() {
  const A_Err result = TheHost().faults.take(mRunning.function);
  if (result != A_Err_NONE) {
    TheHost().countFailure(mRunning.function);
    TheHost().timeline.add(Actor::host, fmt::format("{} fails with {}", mRunning.function, result));
  }
  return result;
}

void SuiteCall::answer(A_Err result, bool isSupplied) {
  if (result != A_Err_NONE) TheHost().countAnswer(result);
  TheHost().showCall(mRunning, result, isSupplied);
}

}  // namespace host
