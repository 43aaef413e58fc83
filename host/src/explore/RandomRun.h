#pragma once

#include <cstdint>

#include "FailurePrinter.h"
#include "Runner.h"
#include "SessionFiles.h"
#include "SessionPart.h"

namespace host {

struct RandomOptions {
  uint64_t seed = 0;
  uint64_t count = 0;
  KnownIssues knownIssues;
};

struct RandomResult {
  uint64_t played = 0;
  int signal = 0;  ///< that ended it, or 0
};

/// Makes up sessions and plays them. Shortens and prints each one that fails. Stops after a few
/// failures. Throws as `PlaySessions` does.
RandomResult PlayRandomSessions(const RandomOptions& random, const RunOptions& options,
                                const SessionPart& part, FailurePrinter& printer);

}  // namespace host
