#pragma once

#include <cstdint>
#include <filesystem>

// The clocks of a session. This program defines the functions of the C library that read the time
// of day. Modules that are loaded later get these definitions too, and so read a time that moves
// only when the session moves it. Clocks that only measure, such as `CLOCK_MONOTONIC`, go on.

namespace host {

/// The time at which every session starts, in seconds since 1970.
inline constexpr int64_t kSessionStart = 1'700'000'000;

/// Returns the time in seconds since 1970.
int64_t VirtualNow();
/// Moves the time on for all threads.
void AdvanceVirtualTime(int64_t seconds);
/// Returns the instance of inotify that `WatchFileDates` uses in the next process that this one
/// forks, or a negative number if the kernel has none.
int TakeWatch();
/// Gives the instance back when that process has ended. A later process uses it again: closing one
/// takes the kernel 5 to 15 ms, as long as a session.
void GiveBackWatch(int watch);
/// Gives each file in the folder, and in all folders in it, the virtual time as its date when it is
/// written, because the kernel gives it the real one. A date that was set stays.
void WatchFileDates(const std::filesystem::path& folder);
/// Corrects the dates of the files written since the last call, to the virtual time of now. Returns
/// false, after one system call, if there are none.
bool UpdateFileDates();

}  // namespace host
