#include "SessionPrinter.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cstdio>

#include "TextFile.h"

namespace host {
namespace {

// Shows the progress on a terminal, and removes it for an empty text. Writes to standard error, so
// that redirected output stays the same.
void ShowProgress(const std::string& text) {
  static const bool isShown = isatty(STDERR_FILENO) != 0;
  if (isShown) fmt::print(stderr, "\r\x1b[K{}", text);
}

void PrintFindings(const Played& played, Level level, const char* title) {
  bool first = true;
  for (const FoundInSession& found : played.findings) {
    const FindingKind& kind = KindOf(found.finding);
    if (kind.level != level) continue;
    if (first) fmt::print("\n{}:\n", title);
    first = false;
    fmt::print("  {}: {}\n", kind.name, EscapeLines(found.text));
  }
}

}  // namespace

void SessionPrinter::begin(const SessionInfo& session) {
  ++mNumber;
  mKept.clear();
  if (mQuiet) {
    ShowProgress(fmt::format("{}/{} {}", mNumber, mCount, session.name));
  } else {
    printHead(session);
  }
}

void SessionPrinter::take(const Event& event) {
  if (mQuiet) {
    mKept.push_back(event);
  } else {
    mTimeline.print(event);
  }
}

void SessionPrinter::end(const SessionInfo& session, const Played& played) {
  if (played.failed) mFailed.push_back(session.name);
  if (mQuiet) ShowProgress("");
  if (mQuiet && !played.failed) return;
  if (mQuiet) printHead(session);
  for (const Event& event : mKept) mTimeline.print(event);
  mTimeline.end();
  PrintFindings(played, Level::error, "failed");
  PrintFindings(played, Level::warning, "warnings");
  if (!played.complete) fmt::print("not every step was played\n");
  if (!played.folder.empty()) fmt::print("kept: {}\n", played.folder.string());
  fmt::print("result: {}\n", played.failed ? "failed" : "ok");
}

bool SessionPrinter::finish() const {
  if (mCount > 1) {
    fmt::print("{}{} sessions, {} failed\n", mQuiet && mFailed.empty() ? "" : "\n", mNumber,
               mFailed.size());
    for (const std::string& name : mFailed) fmt::print("  {}\n", name);
    fmt::print("result: {}\n", mFailed.empty() ? "ok" : "failed");
  }
  return mFailed.empty();
}

void SessionPrinter::printHead(const SessionInfo& session) {
  if (mPrinted) fmt::print("\n");
  mPrinted = true;
  fmt::print("session: {}\n", session.name);
  if (!session.about.empty()) fmt::print("{}\n", session.about);
  mTimeline.begin();
}

void VerdictPrinter::end(const SessionInfo& session, const Played& played) {
  mFailed = mFailed || played.failed;
  const char* const word = played.failed ? "FAIL" : played.findings.empty() ? "ok" : "warn";
  fmt::print("{:<5} {}\n", word, session.name);
  for (const FoundInSession& found : played.findings) {
    fmt::print("      {}: {}\n", KindOf(found.finding).name, EscapeLines(found.text));
  }
  if (!played.folder.empty()) fmt::print("      kept: {}\n", played.folder.string());
}

bool VerdictPrinter::finish() const {
  fmt::print("result: {}\n", mFailed ? "failed" : "ok");
  return !mFailed;
}

}  // namespace host
