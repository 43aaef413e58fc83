#include "SessionPrinter.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cstdio>
#include <utility>

#include "Progress.h"
#include "TextFile.h"

namespace host {

SessionPrinter::SessionPrinter(bool quiet, size_t count)
    : mQuiet(quiet), mCount(count), mTranscript(StyleOf(STDOUT_FILENO)) {}

void SessionPrinter::begin(const SessionInfo& session) {
  ++mNumber;
  mKept.clear();
  if (mQuiet) ShowProgress(fmt::format("{}/{} {}", mNumber, mCount, session.name));
  print((std::exchange(mPrinted, true) ? "\n" : "") + mTranscript.begin(session));
}

void SessionPrinter::take(const Event& event) {
  print(mTranscript.add(event));
}

void SessionPrinter::end(const SessionInfo& session, const Played& played) {
  print(mTranscript.end(played));
  if (played.failed) mFailed.push_back(session.name);
  if (!mQuiet) return;
  ShowProgress("");
  if (played.failed) fmt::print("{}", mKept);
}

void SessionPrinter::print(const std::string& text) {
  if (mQuiet) {
    mKept += text;
  } else {
    fmt::print("{}", text);
  }
}

bool SessionPrinter::printOutcome() const {
  if (mCount > 1) {
    fmt::print("{}{} sessions, {} failed\n", mQuiet && mFailed.empty() ? "" : "\n", mNumber,
               mFailed.size());
    for (const std::string& name : mFailed) fmt::print("  {}\n", name);
    fmt::print("result: {}\n", mFailed.empty() ? "ok" : "failed");
  }
  return mFailed.empty();
}

void VerdictPrinter::end(const SessionInfo& session, const Played& played) {
  mFailed = mFailed || played.failed;
  const char* const word = played.failed ? "FAIL" : played.findings.empty() ? "ok" : "warn";
  fmt::print("{:<5} {}\n", word, session.name);
  for (const FoundInSession& found : played.findings) {
    std::string text = EscapeLines(found.text);
    ReplaceAll(text, "\n", "\n    ");
    fmt::print("      {}: {}\n", KindOf(found.finding).name, text);
  }
  if (!played.complete) fmt::print("      not every step was played\n");
  if (!played.folder.empty()) fmt::print("      kept: {}\n", played.folder.string());
}

bool VerdictPrinter::printOutcome() const {
  fmt::print("result: {}\n", mFailed ? "failed" : "ok");
  return !mFailed;
}

}  // namespace host
