#pragma once

#include <signal.h>

#include <filesystem>
#include <string>
#include <vector>

// Where the plug-in is when something goes wrong: in this process, and in one that has crashed.

namespace host {

/// The signal by which the process that waits asks this one where it hangs.
inline constexpr int kHangSignal = SIGQUIT;

/// What a process has told of its end.
struct CrashReport {
  bool inAnotherThread = false;    ///< than the main one
  std::vector<std::string> lines;  ///< the uncaught exception, if there is one, and the calls
};

/// Has a crash of this process, an uncaught exception and `kHangSignal` write a crash report before
/// the process ends by the signal. Signals that somebody handles already, such as a sanitizer, stay
/// as they are. `folder` is the session folder. A plug-in that closes the host's descriptors loses
/// the report.
void InstallCrashReport(const std::filesystem::path& folder);
/// Has the crash report say so if this isn't the main thread. Returns whether it isn't.
bool TellIfOtherThread();
/// Reads the crash report of a process that has ended. It is empty if there is none.
CrashReport ReadCrashReport(const std::filesystem::path& folder);

/// Returns the calls that lead here, the innermost first, without those of this program and of the
/// C library around the plug-in's.
std::vector<std::string> Backtrace();

/// Returns the type and, on one line, the text of the exception that is being handled.
std::string DescribeException();

}  // namespace host
