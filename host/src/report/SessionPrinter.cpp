#include "SessionPrinter.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string_view>

#include "TextFile.h"

namespace host {
namespace {

std::string_view Variable(const char* name) {
  const char* const value = std::getenv(name);
  return value ? value : "";
}

bool WantsColour() {
  return isatty(STDOUT_FILENO) != 0 && Variable("NO_COLOR").empty() && Variable("TERM") != "dumb";
}

}  // namespace

SessionPrinter::SessionPrinter(Detail detail) : mDetail(detail), mTranscript(WantsColour()) {}

void SessionPrinter::begin(const SessionInfo& session) {
  ++mCount;
  if (mDetail != Detail::everything) ShowProgress(fmt::format("{} {}", mCount, session.name));
  if (mDetail == Detail::everything && mCount > 1) fmt::print("\n");
  mTranscript.begin(session);
  printNow();
}

void SessionPrinter::take(const Event& event) {
  mTranscript.take(event);
  printNow();
  if (event.result) takeCall(event);
}

void SessionPrinter::takeCall(const Event& event) {
  constexpr std::string_view kRegister = "AEGP_Register";
  constexpr std::string_view kHookEnd = "Hook";
  const std::string& function = event.call.function;
  const auto argument = [&](size_t number) { return event.call.arguments.at(number - 1).value; };
  const bool isOk = *event.result == 0;
  ++mCalls;
  mFunctions.insert(function);
  if (function == "AcquireSuite") {
    (isOk ? mSuites : mMissingSuites).insert(argument(1) + " " + argument(2));
  } else if (function == "AEGP_InsertMenuCommand" && isOk) {
    mMenuItems.insert("\"" + argument(2) + "\"");
  } else if (isOk && function.starts_with(kRegister) && function.ends_with(kHookEnd)) {
    const size_t length = function.size() - kRegister.size() - kHookEnd.size();
    mHooks.insert(function.substr(kRegister.size(), length));
  }
}

void SessionPrinter::end(const SessionInfo& session, const Played& played) {
  mTranscript.end(session, played);
  printNow();
  if (played.failed) mFailed.push_back(session.name);
  if (mDetail == Detail::everything) return;
  ShowProgress("");
  if (mDetail == Detail::validation) return group(session, played);
  if (!played.failed) return;
  fmt::print("{}{}", mPrinted ? "\n" : "", mTranscript.takeText());
  mPrinted = true;
}

void SessionPrinter::group(const SessionInfo& session, const Played& played) {
  if (!played.folder.empty()) fmt::print("kept: {}\n", played.folder.string());
  for (const Event& found : played.findings) {
    if (FindingNamed(found.name) == Finding::notSupplied) mUnsupplied.insert(found.call.function);
    const std::string what = found.text.substr(0, found.text.find('\n'));
    const auto same = std::find_if(mGroups.begin(), mGroups.end(), [&](const Group& group) {
      return group.found.name == found.name && group.what == what;
    });
    if (same == mGroups.end()) {
      mGroups.push_back({what, found, {session.name}});
    } else {
      same->sessions.push_back(session.name);
    }
  }
}

void SessionPrinter::printFindings() const {
  for (const Group& group : mGroups) {
    const bool isError = KindOf(group.found).level == Level::error;
    fmt::print("{}: {}\n    in {} of {} sessions: {}\n\n", isError ? "error" : "warning",
               FindingText(group.found), group.sessions.size(), mCount, Join(group.sessions, ", "));
  }
}

void SessionPrinter::printUsage() const {
  const auto printNames = [](const char* what, const Names& names) {
    if (names.empty()) return;
    fmt::print("  {:<22} {}\n", what, Join({names.begin(), names.end()}, ", "));
  };
  fmt::print("the plug-in:\n");
  if (mHooks.empty()) fmt::print("  warning: it registers no hook, so the host never calls it\n");
  printNames("registers hooks:", mHooks);
  printNames("inserts menu items:", mMenuItems);
  printNames("acquires suites:", mSuites);
  printNames("misses suites:", mMissingSuites);
  printNames("calls unsupplied:", mUnsupplied);
  fmt::print("  {:<22} {} functions, {} times\n\n", "calls", mFunctions.size(), mCalls);
}

void SessionPrinter::printNow() {
  if (mDetail != Detail::everything) return;
  fmt::print("{}", mTranscript.takeText());
  mPrinted = true;
}

bool SessionPrinter::printOutcome() const {
  if (mDetail == Detail::validation) {
    printFindings();
    printUsage();
  }
  if (mCount > 1) {
    fmt::print("{}{} sessions, {} failed\n", mPrinted ? "\n" : "", mCount, mFailed.size());
    for (const std::string& name : mFailed) fmt::print("  {}\n", name);
    fmt::print("result: {}\n", mFailed.empty() ? "ok" : "failed");
  }
  return mFailed.empty();
}

}  // namespace host
