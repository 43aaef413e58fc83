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

// Where the text of an entry begins.
constexpr size_t kTextColumn = 19;
// Less isn't worth a break.
constexpr size_t kLeastWidth = kTextColumn + 20;

constexpr std::string_view kPlain = "\x1b[0m";
constexpr std::string_view kRed = "\x1b[31m";
// By actor: green, blue, magenta, cyan, yellow, grey.
constexpr std::array<std::string_view, kActors.size()> kColours{"\x1b[32m", "\x1b[34m", "\x1b[35m",
                                                                "\x1b[36m", "\x1b[33m", "\x1b[90m"};

bool IsSet(const char* variable) {
  const char* const value = std::getenv(variable);
  return value && *value != '\0';
}

// How many columns of a terminal the text takes. The locale is for this alone: that of the process
// would be the plug-in's too.
size_t ColumnsOf(std::string_view text) {
  static const locale_t unicode = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  const locale_t before = uselocale(unicode);
  size_t columns = 0;
  for (auto at = text.begin(); at != text.end();) {
    const int width = wcwidth(static_cast<wchar_t>(utf8::next(at, text.end())));
    columns += width < 0 ? 1 : static_cast<size_t>(width);
  }
  uselocale(before);
  return columns;
}

// Breaks the text at spaces into lines of at most `width` columns. A longer word stays whole.
std::vector<std::string> Wrap(const std::string& text, size_t width) {
  std::vector<std::string> lines;
  std::string line;
  size_t used = 0;
  for (size_t begin = 0; begin < text.size();) {
    // A word, with the spaces before it.
    const size_t word = std::min(text.find_first_not_of(' ', begin), text.size());
    const size_t end = std::min(text.find(' ', word), text.size());
    const size_t columns = ColumnsOf(std::string_view(text).substr(begin, end - begin));
    if (!line.empty() && used + columns > width) {
      lines.push_back(std::exchange(line, text.substr(word, end - word)));
      used = columns - (word - begin);
    } else {
      line += text.substr(begin, end - begin);
      used += columns;
    }
    begin = end;
  }
  lines.push_back(line);
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
  std::string text = EscapeControls(event.text);
  if (mStyle.width >= kLeastWidth) {
    text = Join(Wrap(text, mStyle.width - kTextColumn), "\n" + std::string(kTextColumn, ' '));
  }
  std::string actor = fmt::format("{:<9}", NameOf(event.actor));
  if (mStyle.colour) {
    actor = fmt::format("{}{}{}", kColours[static_cast<size_t>(event.actor)], actor, kPlain);
    if (event.kind == EventKind::expectation && !event.met)
      text = fmt::format("{}{}{}", kRed, text, kPlain);
  }
  return fmt::format("{:>6}  {}  {}\n", isNewTick ? std::to_string(event.tick) : "", actor, text);
}

}  // namespace host
