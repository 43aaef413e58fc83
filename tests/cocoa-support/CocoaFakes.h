#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

/// Controls and records the calls of the functions that replace CoreFoundation and CoreServices, by
/// their names. One for the process.
struct CocoaFakes {
  /// The functions that fail without doing anything.
  std::set<std::string> failing;
  /// The functions called, in order. A release is "CFRelease" and the function that made the
  /// object.
  std::vector<std::string> calls;
  /// The objects that aren't released yet, with the functions that made them.
  std::vector<std::pair<const void*, std::string>> owned;
  /// The time, in seconds since the beginning of 2001. The real one by default.
  std::optional<double> now;
  /// The fraction of a second of each `UTCDateTime`. The real one by default.
  std::optional<uint16_t> fraction;

  std::vector<std::string> TakeCalls() { return std::exchange(calls, {}); }
};
extern CocoaFakes cocoaFakes;

/// Counts the objects in the current autorelease pool.
unsigned int AutoreleasedObjects();
