#pragma once

#include <vector>

#include "Runner.h"
#include "SessionPart.h"
#include "Trials.h"

namespace host {

/// Plays each session as a tolerant one and counts its calls. Then plays it again for each way in
/// which one of them can go wrong. Prints what failed. Goes no further if a session fails with
/// nothing going wrong. Throws `std::runtime_error` if no session has a call, and as `PlaySessions`
/// does.
Explored Sweep(std::vector<Session> sessions, const RunOptions& options, const SessionPart& part,
               FailurePrinter& printer);

}  // namespace host
