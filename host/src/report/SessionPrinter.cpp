#include "SessionPrinter.h"

#include <fmt/format.h>

#include <algorithm>

#include "Progress.h"
#include "TextFile.h"

namespace host {

void SessionPrinter::begin(const SessionInfo& session) {
  ++mCount;
  mKept.clear();
  if (mDetail != Detail::everything) ShowProgress(fmt::format("{} {}", mCount, session.name));
  if (mDetail == Detail::everything && mCount > 1) fmt::print("\n");
  print(mTranscript.begin(session));
}

void SessionPrinter::take(const Event& event) {
  print(mTranscript.add(event));
}

void SessionPrinter::end(const SessionInfo& session, const Played& played) {
  print(mTranscript.end(played));
  if (played.failed) mFailed.push_back(session.name);
  if (mDetail == Detail::everything) return;
  ShowProgress("");
  if (mDetail == Detail::findings) return group(session, played);
  if (!played.failed) return;
  fmt::print("{}{}", mPrinted ? "\n" : "", mKept);
  mPrinted = true;
}

void SessionPrinter::group(const SessionInfo& session, const Played& played) {
  if (!played.folder.empty()) fmt::print("kept: {}\n", played.folder.string());
  for (const Event& found : played.findings) {
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
    const FindingKind& kind = KindOf(group.found);
    fmt::print("{}: {}: {}\n", kind.level == Level::error ? "error" : "warning", kind.name,
               EscapeLines(group.found.text));
    fmt::print("    in {} of {} sessions: {}\n\n", group.sessions.size(), mCount,
               Join(group.sessions, ", "));
  }
}

void SessionPrinter::print(const std::string& text) {
  if (mDetail != Detail::everything) {
    mKept += text;
  } else {
    fmt::print("{}", text);
    mPrinted = true;
  }
}

bool SessionPrinter::printOutcome() const {
  if (mCount > 1) {
    fmt::print("{}{} sessions, {} failed\n", mPrinted ? "\n" : "", mCount, mFailed.size());
    for (const std::string& name : mFailed) fmt::print("  {}\n", name);
    fmt::print("result: {}\n", mFailed.empty() ? "ok" : "failed");
  }
  return mFailed.empty();
}

}  // namespace host
