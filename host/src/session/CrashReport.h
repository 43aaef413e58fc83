#pragma once

namespace host {

/// The signal by which the process that waits has this one tell where it hangs.
extern const int kHangSignal;

/// Has a crash of this process, an uncaught exception and `kHangSignal` write a backtrace to
/// `descriptor`, one frame a line, before the process ends by the signal. Signals that somebody
/// handles already, such as a sanitizer, stay as they are.
void InstallCrashReport(int descriptor);

}  // namespace host
