#pragma once

#include <filesystem>

#include "FlightRecord.h"
#include "Session.h"

namespace host {

struct RunOptions;

struct PlayerSetup {
  const RunOptions& options;
  std::filesystem::path folder;  ///< the session folder
  int reportPipe = -1;
};

/// The exit code of a process that has played a session. Not 0, so that an `exit(0)` of the
/// plug-in's is told from it.
inline constexpr int kPlayedExitCode = 86;

/// Plays the session in this process and ends it by `exit`, so that the static objects of the
/// plug-in are destroyed and its module is finalised. Then the host looks for leaks. `flight` is
/// shared with the process that waits.
[[noreturn]] void PlayAndExit(const Session& session, const PlayerSetup& setup,
                              FlightRecord& flight);

}  // namespace host
