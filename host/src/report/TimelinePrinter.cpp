#include "TimelinePrinter.h"

#include <fmt/format.h>

#include <utility>

#include "TextFile.h"

namespace host {

void TimelinePrinter::begin() {
  mLastTick = -1;
  fmt::print("\n  tick  who        what\n");
}

void TimelinePrinter::print(const Event& event) {
  if (event.kind == EventKind::expectation && event.met) {
    if (mMet.text.empty()) {
      mMet = event;
    } else {
      mMet.text += ", " + event.name;
    }
  } else if (event.kind == EventKind::expectation) {
    printLine(event, event.text);
  } else {
    end();
    if (event.kind == EventKind::entry) printLine(event, event.text);
  }
}

void TimelinePrinter::end() {
  if (!mMet.text.empty()) printLine(mMet, mMet.text);
  mMet.text.clear();
}

void TimelinePrinter::printLine(const Event& event, std::string_view text) {
  const bool isNewTick = std::exchange(mLastTick, event.tick) != event.tick;
  fmt::print("{:>6}  {:<9}  {}\n", isNewTick ? std::to_string(event.tick) : "", NameOf(event.actor),
             EscapeControls(text));
}

}  // namespace host
