#pragma once

#include <cstdint>

/// A point in time as seven calendar fields, without a time zone. All fields start at 0.
struct SDateTime {
  int16_t year = 0;
  int16_t month = 0;
  int16_t day = 0;
  int16_t hour = 0;
  int16_t minute = 0;
  int16_t second = 0;
  int16_t millisecond = 0;

  /// Returns whether all fields are equal.
  bool operator==(const SDateTime&) const = default;
};
