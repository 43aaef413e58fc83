#pragma once

#include <cstdio>
#include <string>
#include <string_view>

// The reports that the process that plays a session sends to the one that waits for it. They go
// through a pipe: static destructors report after the exit code is fixed, and a report has to
// survive a crash that comes later.

namespace host {

enum class ReportKind : char {
  line = 'L',     ///< a line of the timeline
  step = 'T',     ///< a step begins; its place in the session file
  failure = 'F',  ///< a failure of the session; may have several lines
  end = 'E',      ///< all static objects are destroyed, and the host has checked for leaks
};

struct Report {
  ReportKind kind = ReportKind::line;
  std::string text;
};

/// Writes reports to a pipe, which it doesn't own. Drops them until `attach` names the pipe.
class Reporter {
 public:
  void attach(int pipe) { mPipe = pipe; }
  bool attached() const { return mPipe >= 0; }
  void send(ReportKind kind, std::string_view text) const;

 private:
  int mPipe = -1;
};

/// Reads the next report. Returns false at the end of the pipe, even within a report.
bool ReadReport(std::FILE* pipe, Report& report);

}  // namespace host
