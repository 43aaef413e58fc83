#include "Trials.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <stdexcept>
#include <system_error>

#include "Runner.h"
#include "SessionFiles.h"
#include "TextFile.h"
#include "Transcript.h"

namespace host {
namespace {

// A part of a file's name in place of a text.
std::string FileNameOf(std::string text) {
  std::ranges::replace_if(
      text, [](unsigned char letter) { return std::isalnum(letter) == 0 && letter < 0x80; }, '-');
  return text;
}

}  // namespace

Failures::Failures(std::filesystem::path save) : mSave(std::move(save)) {
  if (mSave.empty()) return;
  std::error_code error;
  std::filesystem::create_directories(mSave, error);
  if (!error) return;
  throw std::runtime_error(
      fmt::format("--save: can't make {}: {}", mSave.string(), error.message()));
}

void Failures::print(const Failure& failure) {
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

bool Failures::printOutcome(const std::string& played) const {
  fmt::print("{}, {} failed\n", played, mCount);
  if (CaughtSignal() == 0) fmt::print("result: {}\n", mCount > 0 ? "failed" : "ok");
  return mCount == 0;
}

void Trials::begin(const SessionInfo& session) {
  ShowProgress(fmt::format("{} {}/{} {}", mWhat, mCount + 1, mMax, session.name));
}

void Trials::end(const SessionInfo& /*session*/, const Played& played) {
  ShowProgress("");
  mEnded(mCount++, played);
}

// A signal may have ended it within a session.
void Trials::finish() {
  ShowProgress("");
}

}  // namespace host
