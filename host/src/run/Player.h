#pragma once

#include <filesystem>

#include "FlightRecord.h"
#include "Session.h"

namespace host {

struct RunOptions;

/// Plays the session in this process, which was forked for it, and ends it by `exit`, so that the
/// static objects of the plug-in are destroyed and its module is finalised. Then the host looks for
/// leaks. `folder` is the session folder. `flight` is shared with the process that waits, which
/// reads `pipe`. An `exit` of the plug-in's leaves `flight` unfinished.
[[noreturn]] void PlayAndExit(const Session& session, const RunOptions& options,
                              const std::filesystem::path& folder, int pipe, FlightRecord& flight);

}  // namespace host
