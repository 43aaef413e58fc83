#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "Event.h"

namespace host {

/// Prints the timeline of a session to standard output: a line for each entry, and one for the
/// expectations of a step that are met.
class TimelinePrinter {
 public:
  /// Prints the head of a session's timeline.
  void begin();
  void print(const Event& event);
  /// Prints what was held back.
  void end();

 private:
  void printLine(const Event& event, std::string_view text);

  int64_t mLastTick = -1;  ///< that a line shows
  Event mMet;              ///< expectations that are met, in one event; no text if there is none
};

}  // namespace host
