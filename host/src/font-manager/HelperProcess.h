#pragma once

#include <filesystem>

namespace host {

/// Starts a process that runs beside a session, as the plug-in finds it among the running ones. Its
/// working directory is this process's, and it ends when this process does. Waits for its first
/// line of output. Throws `std::runtime_error` if it can't be started or ends before that.
void StartHelperProcess(const std::filesystem::path& executable);

}  // namespace host
