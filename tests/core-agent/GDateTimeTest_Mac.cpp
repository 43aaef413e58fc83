#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

#include "CocoaFakes.h"
#include "GDateTime.h"
#include "LogLines.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Noon of the first day of 2001, so that no reading is 0.
constexpr double kNoon = 43200;

TEST(GDateTimeClock, GivesUtcInEveryLocalZone) {
  const struct {
    double reading;
    const char* text;
  } kCases[] = {
      {-26524801, "2000-02-28T23:59:59.000Z"},   {-26524800, "2000-02-29T00:00:00.000Z"},
      {-1, "2000-12-31T23:59:59.000Z"},          {1, "2001-01-01T00:00:01.000Z"},
      {721692800.5, "2023-11-14T22:13:20.500Z"}, {3129235199.75, "2100-02-28T23:59:59.750Z"},
      {3129235200, "2100-03-01T00:00:00.000Z"},
  };
  for (const char* zone : {"UTC0", "XYZ-14", "XYZ+12"}) {
    setenv("TZ", zone, 1);
    tzset();
    for (const auto& c : kCases) {
      cocoaFakes.now = c.reading;
      EXPECT_EQ(GDateTime().GetAsISO8601String(true), c.text) << zone;
    }
  }
}

TEST(GDateTimeClock, CutsTheFractionToMilliseconds) {
  cocoaFakes.now = kNoon;
  const std::pair<uint16_t, int16_t> kCases[] = {{0, 0}, {65, 0}, {66, 1}, {65535, 999}};
  for (const auto& [fraction, milliseconds] : kCases) {
    cocoaFakes.fraction = fraction;
    EXPECT_EQ(GDateTime().GetSDateTime().millisecond, milliseconds) << fraction;
    EXPECT_EQ(GDateTime().GetSDateTime().second, 0) << fraction;
  }
}

TEST(GDateTimeClock, AsksThePlatformInOrderAndReleasesWhatItMade) {
  cocoaFakes.now = kNoon;
  GDateTime::OSGetCurrentDateTimeUTC();
  EXPECT_THAT(cocoaFakes.calls,
              ElementsAre("CFTimeZoneCreateWithName", "CFAbsoluteTimeGetCurrent",
                          "CFCalendarCreateWithIdentifier", "CFCalendarSetTimeZone",
                          "UCConvertCFAbsoluteTimeToUTCDateTime", "CFCalendarDecomposeAbsoluteTime",
                          "CFRelease CFCalendarCreateWithIdentifier",
                          "CFRelease CFTimeZoneCreateWithName"));
}

TEST(GDateTimeClock, GivesTheEmptyValueWhereThePlatformFails) {
  const std::string kError = "CoreErrorCodes::kError";
  const struct {
    const char* failing;
    double reading;
    std::string entry;
  } kCases[] = {
      {"CFTimeZoneCreateWithName", kNoon,
       CheckEntry("Miscellaneous", "CoreErrorCodes::kNullPointer", "(gmtZone) == nullptr",
                  0x05000000)},
      {"CFCalendarCreateWithIdentifier", kNoon,
       CheckEntry("Miscellaneous", kError, "gregorian == NULL", 0x01000000)},
      {"", 0, CheckEntry("Miscellaneous", kError, "cfAbsTime == 0", 0x01000000)},
      {"UCConvertCFAbsoluteTimeToUTCDateTime", kNoon,
       CheckEntry("Miscellaneous", kError, "status != noErr", 0x01000000)},
      {"CFCalendarDecomposeAbsoluteTime", kNoon,
       CheckEntry("Miscellaneous", kError, "!valid", 0x01000000)},
  };
  for (const auto& c : kCases) {
    LogLines log;
    cocoaFakes.now = c.reading;
    cocoaFakes.failing = {c.failing};
    EXPECT_TRUE(GDateTime().IsEmpty()) << c.entry;
    EXPECT_THAT(log.Entries(), ElementsAre(c.entry));
    EXPECT_THAT(cocoaFakes.owned, IsEmpty()) << c.entry;
  }
}

}  // namespace
