#pragma once

#include <cstdint>
#include <string>

#include "Runner.h"
#include "SessionFiles.h"
#include "SessionPart.h"
#include "Trials.h"

namespace host {

struct RandomOptions {
  uint64_t seed = 0;
  uint64_t count = 0;
  KnownIssues knownIssues;
};

/// Makes up a tolerant session, and returns the text of its file: its set-up, and steps of the
/// user, the host, the clock and what `part` knows, in any order. One session in two can have
/// faults. The same seed and number give the same session on every machine.
std::string MakeRandomSession(uint64_t seed, uint64_t number, const SessionPart& part);

/// Makes up sessions and plays them. Shortens and prints each one that fails. Stops after a few
/// failures. Throws as `PlaySessions` does.
Explored PlayRandomSessions(const RandomOptions& random, const RunOptions& options,
                            const SessionPart& part, FailurePrinter& printer);

}  // namespace host
