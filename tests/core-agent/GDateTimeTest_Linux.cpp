#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

#include "GDateTime.h"
#include "LogLines.h"
#include "PosixFakes.h"

namespace {

using testing::ElementsAre;

TEST(GDateTimeClock, GivesUtcWithMillisecondsTruncated) {
  const struct {
    timeval reading;
    std::string text;
  } kCases[] = {
      {{0, 1}, "1970-01-01T00:00:00.000Z"},
      {{951782399, 999999}, "2000-02-28T23:59:59.999Z"},
      {{951782400, 0}, "2000-02-29T00:00:00.000Z"},
      {{978307200, 0}, "2001-01-01T00:00:00.000Z"},
      {{1700000000, 1999}, "2023-11-14T22:13:20.001Z"},
      {{4107542399, 1000}, "2100-02-28T23:59:59.001Z"},
      {{4107542400, 0}, "2100-03-01T00:00:00.000Z"},
      {{-1, 999000}, "1969-12-31T23:59:59.999Z"},
  };
  // The zones with leap seconds shift even what is called UTC.
  for (const char* zone : {"UTC0", "XYZ-14", "XYZ+12", "right/UTC"}) {
    setenv("TZ", zone, 1);
    tzset();
    for (const auto& c : kCases) {
      posixFakes.now = c.reading;
      EXPECT_EQ(GDateTime().GetAsISO8601String(true), c.text) << zone;
    }
  }
}

TEST(GDateTimeClock, GivesTheEmptyValueWithoutAReading) {
  LogLines log;
  posixFakes.now = timeval{};
  EXPECT_TRUE(GDateTime().IsEmpty());
  EXPECT_THAT(log.Entries(), ElementsAre(CheckEntry("Miscellaneous", "CoreErrorCodes::kError",
                                                    "cfAbsTime == 0", 0x01000000)));
}

}  // namespace
