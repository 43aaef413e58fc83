#pragma once

#include <cstdint>
#include <string>

#include "SDateTime.h"

/// A point in time that is read and written as ISO 8601 text.
///
/// It holds no time zone: a value means whatever its maker meant. All fields at 0 is the empty
/// value. Nothing here throws beyond what running out of memory does. A value belongs to one
/// thread at a time; the static values are only read after load.
class GDateTime {
 public:
  /// A text that isn't a date, or a field out of its bounds.
  static constexpr uint32_t kParsingError = 0x01001014;

  // Bounds of the fields, both ends included; the same for every month and year.
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

  /// The current time in UTC; the empty value where the clock fails.
  GDateTime();
  /// Takes the record as it is, without a test of its bounds.
  explicit GDateTime(const SDateTime& dateTime);
  /// Takes the text as `SetFromISO8601String` does; the empty value, and one more entry in the
  /// log, where that fails.
  explicit GDateTime(const std::string& dateString);
  GDateTime(const GDateTime&) = default;
  GDateTime& operator=(const GDateTime&) = default;
  virtual ~GDateTime() = default;

  /// Reads "2009-01-02", "2009-01-02T03:04", "2009-01-02T03:04:05" or "2009-01-02T03:04:05.006",
  /// numbers of any width; milliseconds are a count and not a fraction, and above 999 they are 999.
  ///
  /// Whatever follows is ignored, a zone included. The empty text gives the empty value. Returns 0,
  /// or `kParsingError` with the value unchanged and the failed checks in the log.
  uint32_t SetFromISO8601String(const std::string& text);

  /// "2009-01-02", or "2009-01-02T03:04:05.006Z" with the time of day; empty for the empty value.
  std::string GetAsISO8601String(bool includeTime) const;

  /// A copy of the fields.
  SDateTime GetSDateTime() const { return mDateTime; }

  /// Whether all seven fields are 0.
  bool IsEmpty() const;

  /// The system clock's time in UTC, milliseconds truncated; any thread.
  ///
  /// Where the clock can't be read or broken into fields: the empty value, and the failed check in
  /// the log.
  static GDateTime OSGetCurrentDateTimeUTC();

 private:
  uint32_t SetOrReport(const std::string& dateString);

  SDateTime mDateTime;
};
