#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Limits.h"
#include "Runner.h"
#include "SessionPart.h"

namespace host {

struct RandomOptions {
  uint64_t seed = 0;
  uint64_t count = 0;
  std::vector<Session> from;  ///< those that random sessions are made of, if any
  Limits limits;
};

/// A random session that failed.
struct RandomFailure {
  std::string name;  ///< as "random-1-466": the seed, and the number among those of the seed
  std::vector<FoundInSession> findings;  ///< in the shortened session
  YAML::Node session;  ///< a shorter one that fails with findings of the same kinds
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
