#pragma once

#include <cstdint>

// The clock of a played session. This program defines `time()` itself, and the definition also wins
// for modules that are loaded later: they read seconds that pass only when a session says so.

namespace host {

/// The time at which every session starts, in seconds since 1970.
inline constexpr int64_t kSessionStart = 1'700'000'000;

int64_t VirtualNow();
void AdvanceVirtualTime(int64_t seconds);
/// Whether a module that is loaded into this process gets the virtual time from `time()`.
bool ModulesSeeVirtualTime();

}  // namespace host
