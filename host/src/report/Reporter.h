#pragma once

#include <cstdio>
#include <string>
#include <string_view>

// What the process that plays a session tells the one that waits for it. A pipe, because a static
// destructor still has something to say when the exit code is already fixed, and because what was
// said before a crash has to survive it.

namespace host {

enum class ReportKind : char {
  line = 'L',       ///< a line of the timeline
  step = 'T',       ///< where in the session file the step stands that begins
  shortfall = 'S',  ///< something that isn't as it has to be; may have several lines
  end = 'E',        ///< the static objects are gone, and the host has checked what was left
};

struct Report {
  ReportKind kind = ReportKind::line;
  std::string text;
};

/// Writes reports to a pipe that it doesn't own. A detached one, as at first, drops them.
class Reporter {
 public:
  void attach(int pipe) { mPipe = pipe; }
  bool attached() const { return mPipe >= 0; }
  void send(ReportKind kind, std::string_view text) const;

 private:
  int mPipe = -1;
};

/// Reads the next report; false at the end, also when the writer died within a report.
bool ReadReport(std::FILE* pipe, Report& report);

}  // namespace host
