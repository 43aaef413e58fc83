#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

/// What tests decide about the functions that stand in for those of CoreFoundation and
/// CoreServices, and what those were asked. One for the process. They are known by their names.
struct CocoaFakes {
  /// Functions that fail, as they say they do, without doing anything.
  std::set<std::string> failing;
  /// What was called, in order. A release is "CFRelease" and the function that made the object.
  std::vector<std::string> calls;
  /// The objects that aren't released yet, with the functions that made them.
  std::vector<std::pair<const void*, std::string>> owned;
  /// What the clock says, in seconds since the beginning of 2001, or the real time.
  std::optional<double> now;
  /// The fraction of a second that the conversion to a `UTCDateTime` gives, or the real one.
  std::optional<uint16_t> fraction;

  std::vector<std::string> TakeCalls() { return std::exchange(calls, {}); }
};
extern CocoaFakes cocoaFakes;

/// Counts the objects that will be released with the current autorelease pool.
unsigned int AutoreleasedObjects();

/// Makes each weak reference to the object read as nil. Its class calls this when it is
/// deallocated, as this runtime doesn't.
void ClearWeakReferences(const void* object);
