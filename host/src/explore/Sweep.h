#pragma once

#include <vector>

#include "FailurePrinter.h"
#include "Runner.h"
#include "SessionPart.h"

namespace host {

struct SweepResult {
  size_t calls = 0;   ///< that could have failed, in all sessions
  size_t trials = 0;  ///< that were played
  int signal = 0;     ///< that ended it, or 0
};

/// Plays each session as a tolerant one and counts its calls. Then plays it again for each way in
/// which one of them can go wrong. Prints what failed. Goes no further if a session fails with
/// nothing going wrong. Throws `std::runtime_error` if no session has a call, and as `PlaySessions`
/// does.
SweepResult Sweep(std::vector<Session> sessions, const RunOptions& options, const SessionPart& part,
                  FailurePrinter& printer);

}  // namespace host
