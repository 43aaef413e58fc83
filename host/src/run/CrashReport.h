#pragma once

namespace host {

/// The signal by which the process that waits has this one tell where it hangs.
extern const int kHangSignal;

/// The line of a crash report that says that the process didn't end by its main thread.
inline constexpr char kInAnotherThread[] = "in another thread";

/// Has a crash of this process, an uncaught exception and `kHangSignal` write a backtrace to
/// `descriptor`, one frame a line, before the process ends by the signal. Signals that somebody
/// handles already, such as a sanitizer, stay as they are.
void InstallCrashReport(int descriptor);

/// Writes `kInAnotherThread` if this isn't the main thread. Returns whether it is.
bool NoteThread();

}  // namespace host
