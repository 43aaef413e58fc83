#include <sys/time.h>

#include <chrono>

#include "CppCoreMacros.h"
#include "GDateTime.h"

namespace {

// Splits the reading into calendar fields in UTC. A failed check leaves the fields unchanged.
// Doesn't use `gmtime_r`, which applies the leap seconds of some local zones.
uint32_t ConvertToUTC(const timeval& reading, SDateTime& dateTime) {
  uint32_t err = CoreErrorCodes::kSuccess;
  const double cfAbsTime =
      static_cast<double>(reading.tv_sec) + 1e-6 * static_cast<double>(reading.tv_usec);
  CORE_CHECK_CONDITION(cfAbsTime == 0, CoreErrorCodes::kError, "Miscellaneous");

  const std::chrono::sys_seconds time{std::chrono::seconds(reading.tv_sec)};
  const auto midnight = std::chrono::floor<std::chrono::days>(time);
  const std::chrono::year_month_day date(midnight);
  const std::chrono::hh_mm_ss timeOfDay(time - midnight);
  dateTime.year = static_cast<int16_t>(static_cast<int>(date.year()));
  dateTime.month = static_cast<int16_t>(static_cast<unsigned>(date.month()));
  dateTime.day = static_cast<int16_t>(static_cast<unsigned>(date.day()));
  dateTime.hour = static_cast<int16_t>(timeOfDay.hours().count());
  dateTime.minute = static_cast<int16_t>(timeOfDay.minutes().count());
  dateTime.second = static_cast<int16_t>(timeOfDay.seconds().count());
  dateTime.millisecond = static_cast<int16_t>(reading.tv_usec / 1000);
  return err;
}

}  // namespace

GDateTime GDateTime::OSGetCurrentDateTimeUTC() {
  // Stays 0 if the clock can't be read, which the check reports.
  timeval reading = {};
  gettimeofday(&reading, nullptr);
  GDateTime now = kEmptyDateTime;
  ConvertToUTC(reading, now.mDateTime);
  return now;
}
