#include "Trials.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <cstdio>

#include "SessionFiles.h"
#include "TextFile.h"
#include "Transcript.h"

namespace host {
namespace {

// A part of a file's name in place of a text.
std::string FileNameOf(std::string text) {
  std::replace_if(
      text.begin(), text.end(),
      [](unsigned char letter) { return std::isalnum(letter) == 0 && letter < 0x80; }, '-');
  return text;
}

}  // namespace

void FailurePrinter::print(const Failure& failure) {
  ++mCount;
  fmt::print("\n{}\n", failure.title);
  if (failure.findings.empty()) fmt::print("  not every step was played\n");
  for (const Event& found : failure.findings) fmt::print("  {}\n", FindingText(found));
  const std::string text = WriteSession(failure.session, failure.title);
  fmt::print("\nThis session repeats it:\n\n{}", text);
  if (!mSave.empty()) {
    const auto file = mSave / fmt::format("{}-{}.yaml", mCount, FileNameOf(failure.title));
    WriteText(file, text);
    fmt::print("\nwritten: {}\n", file.string());
  }
  std::fflush(stdout);
}

int Trials::play(const NextSession& next, const RunOptions& options,
                 std::vector<RunListener*> listeners) {
  listeners.push_back(this);
  const auto remember = [&] {
    std::shared_ptr<const Session> session = next();
    if (session) mBegun.push_back(session);
    return session;
  };
  return PlaySessions(remember, options, listeners);
}

void Trials::begin(const SessionInfo& session) {
  ShowProgress(fmt::format("{} {}/{} {}", mWhat, mCount + 1, mMax, session.name));
}

void Trials::end(const SessionInfo& /*session*/, const Played& played) {
  ShowProgress("");
  ++mCount;
  const std::shared_ptr<const Session> session = std::move(mBegun.front());
  mBegun.pop_front();
  mEnded(*session, played);
}

// A signal may have ended it within a session.
void Trials::finish() {
  ShowProgress("");
}

}  // namespace host
