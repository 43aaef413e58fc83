#include "GDateTime.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <locale>

#include "LogLines.h"

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

const std::string kNoDash = "ssTime.peek() != '-'";
const std::string kNoT = "ssTime.peek() != 'T'";
const std::string kNoColon = "ssTime.peek() != ':'";
const std::string kBounds =
    "value < static_cast<TSInt32>(min) || value > static_cast<TSInt32>(max)";

std::string Assign(const std::string& arguments) {
  return "AssignField(" + arguments + ")";
}

const std::string kYear = Assign("kMinYear, kMaxYear, originalValue, dateTime.year");
const std::string kMonth = Assign("kMinMonth, kMaxMonth, originalValue, dateTime.month");
const std::string kDay = Assign("kMinDay, kMaxDay, originalValue, dateTime.day");
const std::string kHour = Assign("kMinHour, kMaxHour, originalValue, dateTime.hour");
const std::string kMinute = Assign("kMinMinute, kMaxMinute, originalValue, dateTime.minute");
const std::string kSecond = Assign("kMinSecond, kMaxSecond, originalValue, dateTime.second");
const std::string kMillisecond =
    Assign("kMinMillisecond, kMaxMillisecond, originalValue, dateTime.millisecond");

std::string Failed(const std::string& expression) {
  return CheckEntry("Miscellaneous", "GDateTime::kParsingError", expression,
                    GDateTime::kParsingError);
}

TEST(GDateTime, ReadsDatesAndTimesOfDay) {
  const struct {
    std::string text, written;
  } kCases[] = {
      {"2009-01-02", "2009-01-02T00:00:00.000Z"},
      {"2009-01-02T03:04", "2009-01-02T03:04:00.000Z"},
      {"2009-01-02T03:04:05", "2009-01-02T03:04:05.000Z"},
      {"2009-01-02T03:04:05.006Z", "2009-01-02T03:04:05.006Z"},
      {"2099-12-31T23:59:59.999Z", "2099-12-31T23:59:59.999Z"},
      {"0-1-1", "0000-01-01T00:00:00.000Z"},
      {"9999-12-31", "9999-12-31T00:00:00.000Z"},
      // Numbers of any width, with signs and leading white space.
      {"2009-1-2T3:4:5", "2009-01-02T03:04:05.000Z"},
      {" \t+5- 1-+2T 3: 4: 0000005", "0005-01-02T03:04:05.000Z"},
      {"2009-02-31", "2009-02-31T00:00:00.000Z"},
      // What follows is ignored.
      {"2009-01-02T03:04:05+02:00", "2009-01-02T03:04:05.000Z"},
      {"2009-01-02T03:04:05,5", "2009-01-02T03:04:05.000Z"},
      {"2009-01-02T03:04Z", "2009-01-02T03:04:00.000Z"},
      {"2009-01-02T03:04:05.5 and more", "2009-01-02T03:04:05.005Z"},
      // Milliseconds are a count.
      {"2009-01-02T03:04:05.5", "2009-01-02T03:04:05.005Z"},
      {"2009-01-02T03:04:05.050", "2009-01-02T03:04:05.050Z"},
      {"2009-01-02T03:04:05.1234", "2009-01-02T03:04:05.999Z"},
      {"2009-01-02T03:04:05.99999999999999999999999", "2009-01-02T03:04:05.999Z"},
      // Without digits: 0, or the number before at the end of the text.
      {"2009-03-", "2009-03-03T00:00:00.000Z"},
      {"2009-01-02T12:", "2009-01-02T12:12:00.000Z"},
      {"2009-01-02T03:04:05.", "2009-01-02T03:04:05.000Z"},
      {"2009-01-02T03:04:05.Z", "2009-01-02T03:04:05.000Z"},
  };
  LogLines log;
  for (const auto& c : kCases) {
    GDateTime value(SDateTime{});
    EXPECT_EQ(value.SetFromISO8601String(c.text), 0u) << c.text;
    EXPECT_EQ(value.GetAsISO8601String(true), c.written) << c.text;
    EXPECT_EQ(value.GetAsISO8601String(false), c.written.substr(0, 10)) << c.text;
  }
  EXPECT_THAT(log.Entries(), IsEmpty());
}

TEST(GDateTime, RefusesOtherTextsWithTheFailedChecksInTheLog) {
  const struct {
    std::string text;
    std::vector<std::string> expressions;
  } kCases[] = {
      {"letters", {kNoDash}},
      {"2009", {kNoDash}},
      {"2009-01", {kNoDash}},
      {"2009-01 -02", {kNoDash}},
      {"-1-01-01", {kBounds, kYear}},
      {"10000-01-01", {kBounds, kYear}},
      {"99999999999999999999-01-01", {kBounds, kYear}},
      {"2009-13-01", {kBounds, kMonth}},
      {"2009-00-10", {kBounds, kMonth}},
      {"2009-", {kBounds, kMonth}},
      {"2009-01-00", {kBounds, kDay}},
      {"2009-01-32", {kBounds, kDay}},
      {"2009-01-x", {kBounds, kDay}},
      {"2009-01-02 ", {kNoT}},
      {"2009-01-02 03:04", {kNoT}},
      {"2009-01-02t03:04", {kNoT}},
      {"2009-01-02T12", {kNoColon}},
      {"2009-01-02Tx:04", {kNoColon}},
      {"2009-01-02T24:00", {kBounds, kHour}},
      {"2009-01-25T", {kBounds, kHour}},
      {"2009-01-02T23:60", {kBounds, kMinute}},
      {"2009-01-02T23:59:60", {kBounds, kSecond}},
      {"2009-01-02T23:59:59.-1", {kBounds, kMillisecond}},
      {"2009-01-02T23:59:59.-99999999999999999999", {kBounds, kMillisecond}},
  };
  for (const auto& c : kCases) {
    std::vector<std::string> entries;
    for (const auto& expression : c.expressions) entries.push_back(Failed(expression));

    GDateTime value = GDateTime::kMaxDateTime;
    LogLines log;
    EXPECT_EQ(value.SetFromISO8601String(c.text), GDateTime::kParsingError) << c.text;
    EXPECT_THAT(log.Entries(), ElementsAreArray(entries)) << c.text;
    EXPECT_EQ(value.GetSDateTime(), GDateTime::kMaxDateTime.GetSDateTime()) << c.text;
  }
}

TEST(GDateTime, ConstructorReportsOnTopOfTheParser) {
  LogLines log;
  EXPECT_TRUE(GDateTime(std::string("2009-13-01")).IsEmpty());
  EXPECT_THAT(log.Entries(), ElementsAre(Failed(kBounds), Failed(kMonth),
                                         Failed("SetFromISO8601String(dateString)")));
}

TEST(GDateTime, EmptyTextGivesTheEmptyValue) {
  LogLines log;
  GDateTime value = GDateTime::kMaxDateTime;
  EXPECT_EQ(value.SetFromISO8601String(""), 0u);
  EXPECT_TRUE(value.IsEmpty());
  EXPECT_EQ(value.GetAsISO8601String(true), "");
  EXPECT_EQ(value.GetAsISO8601String(false), "");
  EXPECT_THAT(log.Entries(), IsEmpty());
}

TEST(GDateTime, OneFieldIsEnoughNotToBeEmpty) {
  SDateTime fields;
  EXPECT_TRUE(GDateTime(fields).IsEmpty());
  fields.millisecond = 1;
  EXPECT_FALSE(GDateTime(fields).IsEmpty());
}

TEST(GDateTime, WritesRecordsOutOfBoundsAsTheyAre) {
  const SDateTime fields = {12345, -1, 100, 0, 0, 0, 1000};
  EXPECT_EQ(GDateTime(fields).GetAsISO8601String(true), "12345--1-100T00:00:00.1000Z");
}

TEST(GDateTime, HasItsStaticValuesAtLoad) {
  EXPECT_TRUE(GDateTime::kEmptyDateTime.IsEmpty());
  EXPECT_EQ(GDateTime::kMaxDateTime.GetAsISO8601String(true), "2099-12-31T23:59:59.999Z");
}

struct Grouping : std::numpunct<char> {
  std::string do_grouping() const override { return "\1"; }
};

TEST(GDateTime, DoesNotDependOnTheLocaleOfTheHost) {
  const std::locale host = std::locale::global(std::locale(std::locale::classic(), new Grouping));
  EXPECT_EQ(GDateTime(std::string("2009-10-11T12:13:14.156")).GetAsISO8601String(true),
            "2009-10-11T12:13:14.156Z");
  std::locale::global(host);
}

}  // namespace
