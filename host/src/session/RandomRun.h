#pragma once

#include <cstdint>
#include <vector>

#include "Limits.h"
#include "Runner.h"
#include "SessionPart.h"

namespace host {

struct RandomOptions {
  uint64_t seed = 1;
  uint64_t count = 100;
  std::vector<Session> from;  ///< those that random sessions are made of, if any
  Limits limits;
};

/// A random session that failed.
struct RandomFailure {
  uint64_t number = 0;  ///< among those of the seed, from 1
  std::vector<FoundInSession> findings;
  YAML::Node session;  ///< the shortest that fails with the same finding
};

struct RandomResult {
  uint64_t played = 0;
  std::vector<RandomFailure> failures;
  int signal = 0;  ///< that ended it, or 0
};

/// Makes up sessions and plays them. Shortens each one that fails. Stops after a few failures.
/// Throws as `PlaySessions` does.
RandomResult PlayRandomSessions(const RandomOptions& random, const RunOptions& options,
                                const SessionPart& part);

}  // namespace host
