#include <gmock/gmock.h>

#include <cstdlib>

#include "GDateTime.h"
#include "LogLines.h"
#include "PosixFakes.h"
#include "TemporaryFolder.h"

namespace {

using testing::ElementsAre;

// A time zone file of UTC with one leap second, at the end of June 1972.
const std::string kZoneWithALeapSecond(
    "TZif\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"
    "\0\0\0\0\0\0\0\0\0\0\0\1\0\0\0\0\0\0\0\1\0\0\0\4"
    "\0\0\0\0\0\0UTC\0"
    "\x04\xB2\x58\x00\0\0\0\1",
    62);

TEST(GDateTimeClock, GivesUtcWithMillisecondsTruncated) {
  const TemporaryFolder folder;
  const std::string zoneFile = ":" + folder.Write("zone", kZoneWithALeapSecond).string();
  const std::pair<timeval, std::string> rows[] = {{{0, 1}, "1970-01-01T00:00:00.000Z"},
                                                  {{951782399, 999999}, "2000-02-28T23:59:59.999Z"},
                                                  {{951782400, 1999}, "2000-02-29T00:00:00.001Z"},
                                                  {{4107542400, 0}, "2100-03-01T00:00:00.000Z"},
                                                  {{-1, 999000}, "1969-12-31T23:59:59.999Z"}};
  // A zone with leap seconds shifts even UTC.
  for (const std::string& zone : {std::string("XYZ-14"), std::string("XYZ+12"), zoneFile}) {
    setenv("TZ", zone.c_str(), 1);
    tzset();
    for (const auto& [reading, text] : rows) {
      posixFakes.now = reading;
      EXPECT_EQ(GDateTime().GetAsISO8601String(true), text) << zone;
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

TEST(GLogger, AClockThatFailsCostsTheTimeAndNotTheLine) {
  const LogLines log;
  posixFakes.now = timeval{};
  GLogger::GetSharedInstance()->LogError("id", "one");
  GLogger::GetSharedInstance()->LogError("id", "two");
  // The clock's entry is dropped, because this thread is delivering a line.
  EXPECT_THAT(log.Lines(), ElementsAre("[]\t[id]\t[Error]\tone\n", "[]\t[id]\t[Error]\ttwo\n"));
}

}  // namespace
