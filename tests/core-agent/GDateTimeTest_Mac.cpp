#include <gmock/gmock.h>

#include <cstdlib>

#include "FreshCocoaFakes.h"
#include "GDateTime.h"
#include "LogLines.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Noon of the clock's first day: a reading of 0 fails.
constexpr double kNoon = 43200;

TEST(GDateTimeClock, GivesUtcInEveryLocalZone) {
  const std::pair<double, const char*> rows[] = {{-26524800, "2000-02-29T00:00:00.000Z"},
                                                 {-1, "2000-12-31T23:59:59.000Z"},
                                                 {721692800.5, "2023-11-14T22:13:20.500Z"},
                                                 {3129235200, "2100-03-01T00:00:00.000Z"}};
  for (const char* zone : {"XYZ-14", "XYZ+12"}) {
    setenv("TZ", zone, 1);
    tzset();
    for (const auto& [reading, text] : rows) {
      cocoaFakes.now = reading;
      EXPECT_EQ(GDateTime().GetAsISO8601String(true), text) << zone;
      EXPECT_THAT(cocoaFakes.owned, IsEmpty());
    }
  }
}

TEST(GDateTimeClock, CutsTheFractionToMilliseconds) {
  cocoaFakes.now = kNoon;
  const std::pair<uint16_t, int16_t> rows[] = {{0, 0}, {65, 0}, {66, 1}, {65535, 999}};
  for (const auto& [fraction, milliseconds] : rows) {
    cocoaFakes.fraction = fraction;
    EXPECT_EQ(GDateTime().GetSDateTime().millisecond, milliseconds) << fraction;
  }
}

TEST(GDateTimeClock, GivesTheEmptyValueIfThePlatformFails) {
  const std::pair<const char*, const char*> rows[] = {
      {"CFTimeZoneCreateWithName", "(gmtZone) == nullptr"},
      {"CFCalendarCreateWithIdentifier", "gregorian == NULL"},
      {"", "cfAbsTime == 0"},
      {"UCConvertCFAbsoluteTimeToUTCDateTime", "status != noErr"},
      {"CFCalendarDecomposeAbsoluteTime", "!valid"}};
  for (const auto& [failing, expression] : rows) {
    const bool isNull = expression[0] == '(';
    LogLines log;
    cocoaFakes.now = failing[0] == 0 ? 0 : kNoon;
    cocoaFakes.failing = {failing};
    EXPECT_TRUE(GDateTime().IsEmpty()) << expression;
    EXPECT_THAT(
        log.Entries(),
        ElementsAre(CheckEntry("Miscellaneous",
                               isNull ? "CoreErrorCodes::kNullPointer" : "CoreErrorCodes::kError",
                               expression, isNull ? 0x05000000 : 0x01000000)));
    EXPECT_THAT(cocoaFakes.owned, IsEmpty()) << expression;
  }
}

}  // namespace
