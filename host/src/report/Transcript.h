#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "RunListener.h"

namespace host {

/// How a session's text looks. By default as into a file: without colour, and with lines of any
/// length.
struct TextStyle {
  bool colour = false;
  size_t width = 0;  ///< at which a line ends, in columns; 0 for none
};

/// Returns the style for a descriptor. On a terminal, lines end at its width, and there is colour
/// unless the user's `NO_COLOR` or `TERM` speaks against it.
TextStyle StyleOf(int descriptor);

/// Makes the text of sessions, of one after the other: a head, the timeline, and what came of it.
/// The timeline has a line for each entry, and one for expectations of a step that are met
/// together.
class Transcript {
 public:
  explicit Transcript(TextStyle style = {}) : mStyle(style) {}

  // Each returns the lines that are certain by now.

  std::string begin(const SessionInfo& session);
  std::string add(const Event& event);
  std::string end(const Played& played);

 private:
  std::string line(const Event& event);
  std::string takeMet();

  TextStyle mStyle;
  int64_t mLastTick = -1;  ///< that a line shows
  Event mMet;              ///< expectations that are met, in one event; no text if there is none
};

}  // namespace host
