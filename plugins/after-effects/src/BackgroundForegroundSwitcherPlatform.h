#pragma once

// Platform functions of `BackgroundForegroundSwitcher`. Process ids are positive. Main thread only.

inline constexpr int kNoFrontApplication = -1;
inline constexpr int kNoSuchApplication = -600;

/// Writes the front application's id to `pid` and returns 0. Without one, leaves `pid` untouched
/// and returns `kNoFrontApplication`.
int GetFrontProcessID(int& pid);

/// Writes the id of the first running application with that bundle identifier, as in
/// "com.apple.dock", to `pid` and returns 0. Without one, leaves `pid` untouched and returns
/// `kNoSuchApplication`.
int GetProcessID(const char* bundle_id, int& pid);

/// Brings the application to the front, with all its windows, if it can be. Traces the outcome.
void SetFrontApplication(int pid);

/// Traces an attempt of `SetFrontApplication`, for the platforms' halves.
void TraceActivation(int pid, bool accepted);
