#include <CoreServices/CoreServices.h>

#include "CFOwned_Mac.h"
#include "CppCoreMacros.h"
#include "GDateTime.h"

namespace {

// Splits the time into calendar fields in that zone. A failed check leaves the fields unchanged.
uint32_t ConvertToTimeZone(const __CFTimeZone* timeZone, double cfAbsTime, SDateTime& dateTime) {
  uint32_t err = CoreErrorCodes::kSuccess;
  const CFOwned<CFCalendarRef> gregorian(
      CFCalendarCreateWithIdentifier(kCFAllocatorDefault, kCFGregorianCalendar));
  // NOLINTBEGIN(modernize-use-nullptr): the log shows the expressions as written.
  CORE_CHECK_CONDITION(gregorian == NULL, CoreErrorCodes::kError, "Miscellaneous");
  CORE_CHECK_CONDITION(timeZone == NULL, CoreErrorCodes::kError, "Miscellaneous");
  // NOLINTEND(modernize-use-nullptr)
  CORE_CHECK_CONDITION(cfAbsTime == 0, CoreErrorCodes::kError, "Miscellaneous");
  CFCalendarSetTimeZone(gregorian.get(), timeZone);

  UTCDateTime utcDateTime = {};
  const OSStatus status = UCConvertCFAbsoluteTimeToUTCDateTime(cfAbsTime, &utcDateTime);
  CORE_CHECK_CONDITION(status != noErr, CoreErrorCodes::kError, "Miscellaneous");

  int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0, dayOfWeek = 0;
  const bool valid =
      CFCalendarDecomposeAbsoluteTime(gregorian.get(), cfAbsTime, "yMdHmsE", &year, &month, &day,
                                      &hour, &minute, &second, &dayOfWeek);
  CORE_CHECK_CONDITION(!valid, CoreErrorCodes::kError, "Miscellaneous");

  dateTime.year = static_cast<int16_t>(year);
  dateTime.month = static_cast<int16_t>(month);
  dateTime.day = static_cast<int16_t>(day);
  dateTime.hour = static_cast<int16_t>(hour);
  dateTime.minute = static_cast<int16_t>(minute);
  dateTime.second = static_cast<int16_t>(second);
  dateTime.millisecond = static_cast<int16_t>(utcDateTime.fraction / 65536.0 * 1000.0);
  return err;
}

uint32_t ReadClock(SDateTime& now) {
  uint32_t err = CoreErrorCodes::kSuccess;
  const CFOwned<CFTimeZoneRef> gmtZone(
      CFTimeZoneCreateWithName(kCFAllocatorSystemDefault, CFSTR("GMT"), true));
  CORE_CHECK_NOT_NULL(gmtZone, "Miscellaneous");
  ConvertToTimeZone(gmtZone.get(), CFAbsoluteTimeGetCurrent(), now);
  return err;
}

}  // namespace

GDateTime GDateTime::OSGetCurrentDateTimeUTC() {
  GDateTime now = kEmptyDateTime;
  ReadClock(now.mDateTime);
  return now;
}
