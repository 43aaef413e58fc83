#pragma once

#include <cstdint>

// The clock of a session. This program defines `time()` itself. Modules that are loaded later get
// this definition too, and so read a time that moves only when the session moves it.

namespace host {

/// The time at which every session starts, in seconds since 1970.
inline constexpr int64_t kSessionStart = 1'700'000'000;

int64_t VirtualNow();
void AdvanceVirtualTime(int64_t seconds);
/// Whether a module that is loaded into this process gets the virtual time from `time()`.
bool ModulesSeeVirtualTime();

}  // namespace host
