#pragma once

#include <filesystem>
#include <vector>

#include "Runner.h"
#include "SessionPart.h"

namespace host {

/// Plays each session as a tolerant one and counts its calls. Then plays it again for each way in
/// which one of them can go wrong. Prints what failed and the outcome, and writes the sessions that
/// repeat it to the folder `save`, unless it is empty. Goes no further if a session fails with
/// nothing going wrong. Returns whether none failed. Throws `std::runtime_error` if no session has
/// a call or `save` can't be made, and as `PlaySessions` does.
bool Sweep(std::vector<Session> sessions, const RunOptions& options, const SessionPart& part,
           const std::filesystem::path& save);

}  // namespace host
