#pragma once

#include <string>
#include <vector>

#include "Runner.h"
#include "SessionPart.h"

namespace host {

/// A session in which one call goes wrong, and something with it that must not.
struct SweepFailure {
  std::string session;
  std::string what;  ///< went wrong, as "call 3 of AEGP_GetProjectPath fails with 24301"
  std::vector<FoundInSession> findings;
  YAML::Node repeat;  ///< the session that repeats it
};

struct SweepResult {
  size_t calls = 0;   ///< that could have failed, in all sessions
  size_t trials = 0;  ///< that were played
  std::vector<SweepFailure> failures;
  int signal = 0;  ///< that ended it, or 0
};

/// Plays each session as a tolerant one and counts its calls. Then plays it again for each of them,
/// with that call alone going wrong. Throws as `PlaySessions` does.
SweepResult Sweep(std::vector<Session> sessions, const RunOptions& options,
                  const SessionPart& part);

}  // namespace host
