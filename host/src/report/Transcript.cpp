#include "Transcript.h"

#include <fmt/format.h>
#include <locale.h>
#include <sys/ioctl.h>
#include <unistd.h>
#include <utf8.h>
#include <wchar.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>
#include <utility>
#include <vector>

#include "TextFile.h"

namespace host {
namespace {

// A narrower terminal isn't worth a break: the text of an entry begins at column 19 or later.
constexpr size_t kLeastWidth = 40;

constexpr std::string_view kPlain = "\x1b[0m";
constexpr std::string_view kRed = "\x1b[31m";
// By actor: green, blue, magenta, cyan, yellow, grey.
constexpr std::array<std::string_view, kActors.size()> kColours{"\x1b[32m", "\x1b[34m", "\x1b[35m",
                                                                "\x1b[36m", "\x1b[33m", "\x1b[90m"};

bool IsSet(const char* variable) {
  const char* const value = std::getenv(variable);
  return value && *value != '\0';
}

// How many bytes of the text take at most `width` columns of a terminal. The locale is for this
// alone: that of the process would be the plug-in's too.
size_t BytesThatFit(std::string_view text, size_t width) {
  static const locale_t unicode = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  const locale_t before = uselocale(unicode);
  size_t columns = 0;
  const char* at = text.data();
  const char* const end = at + text.size();
  for (const char* next = at; next != end; at = next) {
    const int more = wcwidth(static_cast<wchar_t>(utf8::next(next, end)));
    columns += more < 0 ? 1 : static_cast<size_t>(more);
    if (columns > width) break;
  }
  uselocale(before);
  return static_cast<size_t>(at - text.data());
}

// Breaks the text into lines of at most `width` columns, at spaces where there are any.
std::vector<std::string> Wrap(std::string_view text, size_t width) {
  std::vector<std::string> lines;
  size_t fits = 0;
  while ((fits = BytesThatFit(text, width)) < text.size()) {
    const size_t space = text.rfind(' ', fits);
    const bool isBetweenWords =
        space != std::string_view::npos && text.find_first_not_of(' ') < space;
    const size_t end = isBetweenWords ? space : fits;
    lines.emplace_back(text.substr(0, text.find_last_not_of(' ', end - 1) + 1));
    text.remove_prefix(std::min(text.find_first_not_of(' ', end), text.size()));
  }
  if (!text.empty() || lines.empty()) lines.emplace_back(text);
  return lines;
}

std::string Findings(const Played& played, Level level, std::string_view title) {
  std::string text;
  for (const FoundInSession& found : played.findings) {
    const FindingKind& kind = KindOf(found.finding);
    if (kind.level != level) continue;
    if (text.empty()) text = fmt::format("\n{}:\n", title);
    text += fmt::format("  {}: {}\n", kind.name, EscapeLines(found.text));
  }
  return text;
}

}  // namespace

TextStyle StyleOf(int descriptor) {
  if (isatty(descriptor) == 0) return {};
  TextStyle style;
  const char* const terminal = std::getenv("TERM");
  style.colour = !IsSet("NO_COLOR") && !(terminal && std::string_view(terminal) == "dumb");
  winsize size{};
  if (ioctl(descriptor, TIOCGWINSZ, &size) == 0) style.width = size.ws_col;
  return style;
}

std::string Transcript::begin(const SessionInfo& session) {
  mLastTick = -1;
  return fmt::format("session: {}\n{}{}\n  tick  who        what\n", session.name, session.about,
                     session.about.empty() ? "" : "\n");
}

std::string Transcript::add(const Event& event) {
  const bool joins =
      event.met && !mMet.text.empty() && event.step == mMet.step && event.tick == mMet.tick;
  if (joins) {
    mMet.text += ", " + event.name;
    return "";
  }
  std::string text = takeMet();
  if (event.met) {
    mMet = event;
  } else if (event.kind == EventKind::entry || event.kind == EventKind::expectation) {
    text += line(event);
  }
  return text;
}

std::string Transcript::end(const Played& played) {
  std::string text = takeMet();
  text += Findings(played, Level::error, "failed") + Findings(played, Level::warning, "warnings");
  if (!played.complete) text += "not every step was played\n";
  if (!played.folder.empty()) text += fmt::format("kept: {}\n", played.folder.string());
  return text + fmt::format("result: {}\n", played.failed ? "failed" : "ok");
}

std::string Transcript::takeMet() {
  return mMet.text.empty() ? "" : line(std::exchange(mMet, Event()));
}

std::string Transcript::line(const Event& event) {
  const bool isNewTick = std::exchange(mLastTick, event.tick) != event.tick;
  const std::string tick = fmt::format("{:>6}", isNewTick ? std::to_string(event.tick) : "");
  std::string actor = fmt::format("{:<9}", NameOf(event.actor));
  std::string text = EscapeControls(event.text);
  if (mStyle.width >= kLeastWidth) {
    const size_t column = fmt::format("{}  {}  ", tick, actor).size();
    text = Join(Wrap(text, mStyle.width - column), "\n" + std::string(column, ' '));
  }
  if (mStyle.colour) {
    actor = fmt::format("{}{}{}", kColours[static_cast<size_t>(event.actor)], actor, kPlain);
    if (event.kind == EventKind::expectation && !event.met)
      text = fmt::format("{}{}{}", kRed, text, kPlain);
  }
  return fmt::format("{}  {}  {}\n", tick, actor, text);
}

}  // namespace host
