#include "Timeline.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <utility>

namespace host {
namespace {

std::string_view NameOf(Actor actor) {
  static constexpr std::array<std::string_view, 6> kNames{"user",      "host",    "plug-in",
                                                          "framework", "desktop", "session"};
  return kNames[static_cast<size_t>(actor)];
}

// Makes `stream`, whose descriptor is `descriptor`, write to `file` at once: what stands in a
// buffer is lost in a crash. Returns a descriptor to read from.
int Redirect(const char* file, std::FILE* stream, int descriptor) {
  const int output = open(file, O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
  if (output < 0 || dup2(output, descriptor) < 0) {
    throw std::runtime_error(fmt::format("can't open {}", file));
  }
  std::setvbuf(stream, nullptr, _IONBF, 0);
  return output;
}

}  // namespace

std::string TimelineLine(std::string_view tick, Actor actor, std::string_view text) {
  return fmt::format("{:>6}  {:<9}  {}", tick, NameOf(actor), EscapeControls(text));
}

std::string StdoutText(std::string_view line) {
  return fmt::format("prints: {}", line);
}

std::string StderrText(std::string_view line) {
  return fmt::format("writes to standard error: {}", line);
}

void Timeline::begin(const Reporter& reporter, FlightRecord& flight) {
  mReporter = &reporter;
  mFlight = &flight;
  mFolderPrefix = std::filesystem::current_path().string() + "/";
  std::fflush(nullptr);
  mStdout.follow(Redirect(kStdoutFile, stdout, STDOUT_FILENO));
  mStderr.follow(Redirect(kStderrFile, stderr, STDERR_FILENO));
}

void Timeline::add(Actor actor, std::string_view text) {
  drain();
  show(actor, std::string(text));
}

void Timeline::drain() {
  std::fflush(nullptr);
  for (const std::string& line : mStdout.newLines()) takeStdoutLine(line);
  for (const std::string& line : mStderr.newLines()) takeStderrLine(line);
  mFlight->stdoutTaken = mStdout.taken();
  mFlight->stderrTaken = mStderr.taken();
  for (const auto& source : mSources) source();
}

void Timeline::drainRest() {
  drain();
  if (const std::string rest = mStdout.takeRest(); !rest.empty()) takeStdoutLine(rest);
  if (const std::string rest = mStderr.takeRest(); !rest.empty()) takeStderrLine(rest);
  mFlight->stdoutTaken = mStdout.taken();
  mFlight->stderrTaken = mStderr.taken();
}

void Timeline::show(Actor actor, std::string text) {
  shortenPaths(text);
  const bool isNewTick = std::exchange(mLastShownTick, tick) != tick;
  mReporter->send(ReportKind::line,
                  TimelineLine(isNewTick ? std::to_string(tick) : "", actor, text));
}

void Timeline::takeStdoutLine(const std::string& line) {
  record.stdoutLines.push_back(line);
  show(Actor::plugIn, StdoutText(line));
}

void Timeline::takeStderrLine(const std::string& line) {
  record.stderrLines.push_back(line);
  show(Actor::plugIn, StderrText(line));
}

}  // namespace host
