#include "Timeline.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <stdexcept>
#include <utility>

namespace host {
namespace {

std::string_view NameOf(Actor actor) {
  static constexpr std::array<std::string_view, 6> kNames{"user",      "host",    "plug-in",
                                                          "framework", "desktop", "session"};
  return kNames[static_cast<size_t>(actor)];
}

std::vector<std::string> SplitAtTabs(const std::string& line) {
  std::vector<std::string> parts;
  size_t begin = 0;
  for (size_t end = 0; (end = line.find('\t', begin)) != std::string::npos; begin = end + 1) {
    parts.push_back(line.substr(begin, end - begin));
  }
  parts.push_back(line.substr(begin));
  return parts;
}

std::string Unescape(std::string_view escaped) {
  std::string text;
  for (size_t i = 0; i < escaped.size(); ++i) {
    if (escaped[i] != '\\' || i + 1 == escaped.size()) {
      text += escaped[i];
      continue;
    }
    const char kind = escaped[++i];
    text += kind == 't' ? '\t' : kind == 'n' ? '\n' : kind;
  }
  return text;
}

FrameworkCall ParseJournalLine(const std::string& line) {
  const std::vector<std::string> parts = SplitAtTabs(line);
  FrameworkCall call;
  call.operation = call.text = parts.front();
  for (size_t i = 1; i < parts.size(); ++i) {
    const size_t equals = parts[i].find('=');
    if (equals == std::string::npos) continue;
    call.fields[parts[i].substr(0, equals)] = Unescape(parts[i].substr(equals + 1));
    call.text += "  " + parts[i];
  }
  return call;
}

int OpenOrThrow(int descriptor, const char* what) {
  if (descriptor < 0) throw std::runtime_error(fmt::format("can't open {}", what));
  return descriptor;
}

}  // namespace

void Timeline::begin(const Reporter& reporter, bool shown) {
  mReporter = &reporter;
  mShown = shown;
  mFolderPrefix = std::filesystem::current_path().string() + "/";
  mJournal.follow(OpenOrThrow(open("journal", O_RDONLY | O_CREAT | O_CLOEXEC, 0600), "journal"));
  const int output =
      OpenOrThrow(open(".stdout", O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC, 0600), "stdout");
  std::fflush(nullptr);
  OpenOrThrow(dup2(output, STDOUT_FILENO), "standard output");
  mStdout.follow(output);
}

void Timeline::add(Actor actor, std::string_view text) {
  drain();
  show(actor, std::string(text));
}

void Timeline::drain() {
  std::fflush(nullptr);
  for (const std::string& line : mStdout.newLines()) takeStdoutLine(line);
  for (const std::string& line : mJournal.newLines()) takeJournalLine(line);
}

void Timeline::drainRest() {
  drain();
  if (const std::string rest = mStdout.takeRest(); !rest.empty()) takeStdoutLine(rest);
}

void Timeline::show(Actor actor, std::string text) {
  if (!mShown) return;
  ReplaceAll(text, mFolderPrefix, "");
  ReplaceAll(text, "\n", "\\n");
  const bool isNewTick = std::exchange(mLastShownTick, tick) != tick;
  mReporter->send(
      ReportKind::line,
      fmt::format("{:>6}  {:<9}  {}", isNewTick ? std::to_string(tick) : "", NameOf(actor), text));
}

void Timeline::takeStdoutLine(const std::string& line) {
  record.stdoutLines.push_back(line);
  show(Actor::plugIn, fmt::format("prints: {}", line));
}

void Timeline::takeJournalLine(const std::string& line) {
  std::string relative = line;
  ReplaceAll(relative, mFolderPrefix, "");
  FrameworkCall call = ParseJournalLine(relative);
  call.tick = tick;
  if (const auto left = answersLeft.find(call.operation);
      left != answersLeft.end() && left->second > 0) {
    --left->second;
  }
  show(Actor::framework, call.text);
  record.frameworkCalls.push_back(std::move(call));
}

}  // namespace host
