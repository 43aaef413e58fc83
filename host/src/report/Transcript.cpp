#include "Transcript.h"

#include <fmt/format.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <string_view>
#include <utility>

#include "TextFile.h"

namespace host {
namespace {

constexpr std::string_view kPlain = "\x1b[0m";
constexpr std::string_view kRed = "\x1b[31m";
// By actor: green, blue, magenta, cyan, yellow, grey.
constexpr std::array<std::string_view, kActors.size()> kColours{"\x1b[32m", "\x1b[34m", "\x1b[35m",
                                                                "\x1b[36m", "\x1b[33m", "\x1b[90m"};

std::string Findings(const Played& played, Level level, std::string_view title) {
  std::string text;
  for (const Event& found : played.findings) {
    if (KindOf(found).level != level) continue;
    if (text.empty()) text = fmt::format("\n{}:\n", title);
    text += fmt::format("  {}\n", FindingText(found));
  }
  return text;
}

}  // namespace

void ShowProgress(const std::string& text) {
  static const bool isShown = isatty(STDERR_FILENO) != 0;
  if (isShown) fmt::print(stderr, "\r\x1b[K{}", text);
}

std::string FindingText(const Event& found) {
  return fmt::format("{}: {}", found.name, EscapeLines(found.text));
}

void Transcript::begin(const SessionInfo& session) {
  mLastTick = -1;
  mText = fmt::format("session: {}\n{}{}\n  tick  who        what\n", session.name, session.about,
                      session.about.empty() ? "" : "\n");
}

void Transcript::take(const Event& event) {
  const bool joins =
      event.isMet() && !mMet.text.empty() && event.step == mMet.step && event.tick == mMet.tick;
  if (joins) {
    mMet.text += ", " + event.name;
    return;
  }
  addMet();
  if (event.isMet()) {
    mMet = event;
  } else if (event.kind == EventKind::entry || event.kind == EventKind::expectation) {
    addLine(event);
  }
}

void Transcript::end(const SessionInfo& /*session*/, const Played& played) {
  addMet();
  mText += Findings(played, Level::error, "failed") + Findings(played, Level::warning, "warnings");
  if (!played.complete) mText += "not every step was played\n";
  if (!played.folder.empty()) mText += fmt::format("kept: {}\n", played.folder.string());
  mText += fmt::format("result: {}\n", played.failed ? "failed" : "ok");
}

void Transcript::addMet() {
  if (!mMet.text.empty()) addLine(std::exchange(mMet, Event()));
}

void Transcript::addLine(const Event& event) {
  const bool isNewTick = std::exchange(mLastTick, event.tick) != event.tick;
  const std::string tick = fmt::format("{:>6}", isNewTick ? std::to_string(event.tick) : "");
  std::string actor = fmt::format("{:<9}", NameOf(event.actor));
  std::string text = EscapeControls(event.text);
  if (mHasColour) {
    actor = fmt::format("{}{}{}", kColours[static_cast<size_t>(event.actor)], actor, kPlain);
    if (event.kind == EventKind::expectation && !event.isMet())
      text = fmt::format("{}{}{}", kRed, text, kPlain);
  }
  mText += fmt::format("{}  {}  {}\n", tick, actor, text);
}

}  // namespace host
