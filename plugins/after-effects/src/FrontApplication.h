#pragma once

// The platform's running applications, for `BackgroundForegroundSwitcher` alone. Process ids are
// positive. Main thread only.

inline constexpr int kNoFrontApplication = -1;
inline constexpr int kNoSuchApplication = -600;

/// Writes the front application's id to `pid` and returns 0; `kNoFrontApplication`, and `pid`
/// untouched, if there is none.
int GetFrontProcessID(int& pid);

/// Writes the id of the first running application with that bundle identifier, UTF-8, to `pid` and
/// returns 0; `kNoSuchApplication`, and `pid` untouched, if there is none.
int GetProcessID(const char* bundle_id, int& pid);

/// Brings the application, with all its windows, in front of the others. One that can't be brought
/// there stays where it is.
void SetFrontApplication(int pid);
