#pragma once

#include <cstdint>

// The clocks of a session. This program defines the functions of the C library that read the time
// of day. Modules that are loaded later get these definitions too, and so read a time that moves
// only when the session moves it. Clocks that only measure, such as `CLOCK_MONOTONIC`, go on.

namespace host {

/// The time at which every session starts, in seconds since 1970.
inline constexpr int64_t kSessionStart = 1'700'000'000;

int64_t VirtualNow();
void AdvanceVirtualTime(int64_t seconds);
/// Returns whether a module that is loaded into this process gets the virtual time.
bool ModulesSeeVirtualTime();

}  // namespace host
