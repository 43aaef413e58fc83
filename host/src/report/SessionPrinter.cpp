#include "SessionPrinter.h"

#include <fmt/format.h>

#include "Progress.h"

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
  if (mDetail == Detail::findings) {
    mKept = fmt::format("session: {}\n{}", session.name, FindingsText(played));
  }
  const bool isPrinted =
      mDetail == Detail::findings ? !played.findings.empty() || played.failed : played.failed;
  if (!isPrinted) return;
  fmt::print("{}{}", mPrinted ? "\n" : "", mKept);
  mPrinted = true;
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
