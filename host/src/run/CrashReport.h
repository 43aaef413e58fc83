#pragma once

#include <signal.h>

#include <filesystem>

namespace host {

/// The signal by which the process that waits has this one tell where it hangs.
inline constexpr int kHangSignal = SIGQUIT;

/// The file in the session folder that takes the crash report, if there is one.
inline constexpr char kCrashFile[] = ".crash";

/// The line of a crash report that says that the process didn't end by its main thread.
inline constexpr char kInAnotherThread[] = "in another thread";

/// Has a crash of this process, an uncaught exception and `kHangSignal` write a backtrace to
/// `kCrashFile`, one frame a line, before the process ends by the signal. Signals that somebody
/// handles already, such as a sanitizer, stay as they are. `folder` is the session folder.
void InstallCrashReport(const std::filesystem::path& folder);

/// Writes `kInAnotherThread` if this isn't the main thread. Returns whether it did.
bool WriteIfOtherThread();

}  // namespace host
