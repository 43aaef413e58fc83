#pragma once

#include <cstdint>
#include <string>

#include "SDateTime.h"

/// A point in time, read and written as ISO 8601 text.
///
/// The value has no time zone: only its maker knows the zone. The empty value has all fields at 0.
/// Nothing throws, except when memory runs out. A value belongs to one thread at a time. The static
/// values are only read after load.
class GDateTime {
 public:
  /// The text isn't a date, or a field is out of its bounds.
  static constexpr uint32_t kParsingError = 0x01001014;

  // Inclusive bounds of the fields, the same for every month and year.
  static constexpr int16_t kMinYear = 0;
  static constexpr int16_t kMaxYear = 9999;
  static constexpr int16_t kMinMonth = 1;
  static constexpr int16_t kMaxMonth = 12;
  static constexpr int16_t kMinDay = 1;
  static constexpr int16_t kMaxDay = 31;
  static constexpr int16_t kMinHour = 0;
  static constexpr int16_t kMaxHour = 23;
  static constexpr int16_t kMinMinute = 0;
  static constexpr int16_t kMaxMinute = 59;
  static constexpr int16_t kMinSecond = 0;
  static constexpr int16_t kMaxSecond = 59;
  static constexpr int16_t kMinMillisecond = 0;
  static constexpr int16_t kMaxMillisecond = 999;

  /// The empty value.
  static const GDateTime kEmptyDateTime;
  /// The last millisecond of the year 2099.
  static const GDateTime kMaxDateTime;

  /// Reads the current time in UTC. If the clock fails, the value is empty.
  GDateTime();
  /// Copies the fields without checking their bounds.
  explicit GDateTime(const SDateTime& dateTime);
  /// Parses the text as `SetFromISO8601String` does. If that fails, the value is empty, and the log
  /// has one more entry.
  explicit GDateTime(const std::string& dateString);
  GDateTime(const GDateTime&) = default;
  GDateTime& operator=(const GDateTime&) = default;
  virtual ~GDateTime() = default;

  /// Parses "2009-01-02", "2009-01-02T03:04", "2009-01-02T03:04:05" or "2009-01-02T03:04:05.006".
  ///
  /// Numbers may have any width. Milliseconds are a count, at most 999: ".5" gives 5, ".1234" gives
  /// 999. Ignores the text that follows, even a zone. The empty text gives the empty value. Returns
  /// 0. On failure, returns `kParsingError`, leaves the value unchanged and logs the failed checks.
  uint32_t SetFromISO8601String(const std::string& text);

  /// Writes "2009-01-02", or "2009-01-02T03:04:05.006Z" with the time of day. The empty value gives
  /// the empty text.
  std::string GetAsISO8601String(bool includeTime) const;

  /// Returns a copy of the fields.
  SDateTime GetSDateTime() const { return mDateTime; }

  /// Returns whether all seven fields are 0.
  bool IsEmpty() const;

  /// Reads the system clock in UTC, truncated to milliseconds. On failure, returns the empty value
  /// and logs a failed check. Any thread.
  static GDateTime OSGetCurrentDateTimeUTC();

 private:
  uint32_t SetOrReport(const std::string& dateString);

  SDateTime mDateTime;
};
