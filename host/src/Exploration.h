#pragma once

#include <filesystem>
#include <vector>

#include "RandomRun.h"
#include "Runner.h"
#include "SessionPart.h"

// The commands that try what no session says.

namespace host {

struct Explored {
  bool failed = false;
  int signal = 0;  ///< that ended it, or 0
};

/// Sweeps the sessions and prints what failed, with the sessions that repeat it. Writes these to
/// the folder `save` too, unless it is empty. Throws `std::runtime_error`.
Explored PrintSweep(const std::vector<Session>& sessions, const RunOptions& options,
                    const SessionPart& part, const std::filesystem::path& save);

/// Does the same for random sessions.
Explored PrintRandom(const RandomOptions& random, const RunOptions& options,
                     const SessionPart& part, const std::filesystem::path& save);

}  // namespace host
