#pragma once

#include <filesystem>

#include "FlightRecord.h"
#include "Session.h"

namespace host {

struct PlayerSetup {
  PluginModule module;
  std::filesystem::path folder;  ///< the session folder
  int reportPipe = -1;
  int crashReport = -1;  ///< takes the backtrace of a crash
};

/// Plays the session in this process and ends it by `exit`, so that the static objects of the
/// plug-in are destroyed, and then those of the host, which looks for leaks. `flight` is shared
/// with the process that waits.
[[noreturn]] void PlayAndExit(const Session& session, const PlayerSetup& setup,
                              FlightRecord& flight);

}  // namespace host
