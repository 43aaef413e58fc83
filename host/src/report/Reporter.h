#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "FlightRecord.h"

// The reports that the process that plays a session sends to the one that waits for it. They go
// through a pipe: static destructors report after the exit code is fixed, and a report has to
// survive a crash that comes later.

namespace host {

enum class ReportKind : char {
  event = 'V',       ///< an event, as a JSON object
  finding = 'F',     ///< a finding, see `ToReport`
  misuse = 'M',      ///< the same, for a misuse of the host that the session may still expect
  expected = 'X',    ///< the session expects every misuse since the last such report
  unloadable = 'U',  ///< the plug-in's module can't be loaded, and why
  played = 'P',      ///< all steps were played
  destroying = 'D',  ///< the session is over, played or not
  end = 'E',         ///< all modules are finalised, and the host has checked for leaks
};

struct Report {
  ReportKind kind = ReportKind::event;
  std::string text;
};

/// Writes reports to a pipe, which it doesn't own. Drops them until `attach` names the pipe, and in
/// a process that the plug-in has forked.
class Reporter {
 public:
  /// Time that the other process needs doesn't count for the time limit of `flight`.
  void attach(int pipe, FlightRecord& flight);
  void send(ReportKind kind, std::string_view text) const;

 private:
  int mPipe = -1;
  FlightRecord* mFlight = nullptr;
};

/// Reads the report at `place` and moves `place` past it. Returns false if it isn't whole.
bool ParseReport(std::string_view bytes, size_t& place, Report& report);

}  // namespace host
