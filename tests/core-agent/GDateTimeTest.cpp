#include "GDateTime.h"

#include <gmock/gmock.h>

#include <locale>

#include "LogLines.h"

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

const std::string kBounds =
    "value < static_cast<TSInt32>(min) || value > static_cast<TSInt32>(max)";

std::string Field(const std::string& constant, const std::string& member) {
  return "AssignField(kMin" + constant + ", kMax" + constant + ", originalValue, dateTime." +
         member + ")";
}

std::string Separator(char separator) {
  return std::string("ssTime.peek() != '") + separator + "'";
}

std::string Failed(const std::string& expression) {
  return CheckEntry("Miscellaneous", "GDateTime::kParsingError", expression, 0x01001014);
}

TEST(GDateTime, ReadsDatesAndTimesOfDay) {
  const std::pair<std::string, std::string> dates[] = {
      {"2099-12-31T23:59:59.999Z", "2099-12-31T23:59:59.999Z"},
      {"0-1-1", "0000-01-01T00:00:00.000Z"},
      {"9999-12-31", "9999-12-31T00:00:00.000Z"},
      {" \t+5- 1-+2T 3: 4: 0000005", "0005-01-02T03:04:05.000Z"},
      {"2009-02-31", "2009-02-31T00:00:00.000Z"},
      // Without digits, the end of the text repeats the previous number.
      {"2009-03-", "2009-03-03T00:00:00.000Z"},
      {"2009-01-02T12:", "2009-01-02T12:12:00.000Z"}};
  // Milliseconds are a count, and the parser ignores the rest.
  const std::pair<std::string, std::vector<std::string>> tails[] = {
      {"00.000", {"", "Z"}},
      {"05.000", {":05", ":05.", ":05.Z", ":05+02:00", ":05,5"}},
      {"05.005", {":05.5 and more"}},
      {"05.050", {":05.050"}},
      {"05.999", {":05.1234", ":05.99999999999999999999999"}}};
  LogLines log;
  const auto expectReads = [](const std::string& text, const std::string& written) {
    GDateTime value(SDateTime{});
    EXPECT_EQ(value.SetFromISO8601String(text), 0u) << text;
    EXPECT_EQ(value.GetAsISO8601String(true), written) << text;
    EXPECT_EQ(value.GetAsISO8601String(false), written.substr(0, 10)) << text;
  };
  for (const auto& [text, written] : dates) expectReads(text, written);
  for (const auto& [seconds, texts] : tails) {
    for (const std::string& tail : texts)
      expectReads("2009-01-02T03:04" + tail, "2009-01-02T03:04:" + seconds + "Z");
  }
  EXPECT_THAT(log.Entries(), IsEmpty());
}

TEST(GDateTime, RefusesOtherTextsWithTheFailedChecksInTheLog) {
  const std::pair<std::string, std::vector<std::string>> rows[] = {
      {Separator('-'), {"2009", "2009-01 -02"}},
      {Separator('T'), {"2009-01-02 ", "2009-01-02t03:04"}},
      {Separator(':'), {"2009-01-02T12"}},
      {Field("Year", "year"), {"-1-01-01", "10000-01-01", "99999999999999999999-01-01"}},
      {Field("Month", "month"), {"2009-13-01", "2009-00-10", "2009-"}},
      {Field("Day", "day"), {"2009-01-00", "2009-01-32"}},
      {Field("Hour", "hour"), {"2009-01-02T24:00", "2009-01-25T"}},
      {Field("Minute", "minute"), {"2009-01-02T23:60"}},
      {Field("Second", "second"), {"2009-01-02T23:59:60"}},
      {Field("Millisecond", "millisecond"), {"2009-01-02T23:59:59.-1"}}};
  for (const auto& [expression, texts] : rows) {
    std::vector<std::string> entries = {Failed(expression)};
    if (expression.starts_with("AssignField")) entries.insert(entries.begin(), Failed(kBounds));

    for (const std::string& text : texts) {
      GDateTime value = GDateTime::kMaxDateTime;
      LogLines log;
      EXPECT_EQ(value.SetFromISO8601String(text), GDateTime::kParsingError) << text;
      EXPECT_THAT(log.Entries(), ElementsAreArray(entries)) << text;
      EXPECT_EQ(value.GetAsISO8601String(true), "2099-12-31T23:59:59.999Z") << text;
    }
  }
}

TEST(GDateTime, ConstructorReportsOnTopOfTheParser) {
  LogLines log;
  EXPECT_TRUE(GDateTime(std::string("2009-13-01")).IsEmpty());
  EXPECT_THAT(log.Entries(), ElementsAre(Failed(kBounds), Failed(Field("Month", "month")),
                                         Failed("SetFromISO8601String(dateString)")));
}

TEST(GDateTime, EmptyTextGivesTheEmptyValue) {
  LogLines log;
  GDateTime value = GDateTime::kMaxDateTime;
  EXPECT_EQ(value.SetFromISO8601String(""), 0u);
  EXPECT_TRUE(value.IsEmpty());
  EXPECT_EQ(value.GetAsISO8601String(true) + value.GetAsISO8601String(false), "");
  EXPECT_FALSE(GDateTime(SDateTime{0, 0, 0, 0, 0, 0, 1}).IsEmpty());
  EXPECT_THAT(log.Entries(), IsEmpty());
}

struct Grouping : std::numpunct<char> {
  std::string do_grouping() const override { return "\1"; }
};

TEST(GDateTime, WritesRecordsOutOfBoundsAsTheyAreInAnyLocale) {
  const std::locale host = std::locale::global(std::locale(std::locale::classic(), new Grouping));
  EXPECT_EQ(GDateTime(SDateTime{12345, -1, 100, 0, 0, 0, 1000}).GetAsISO8601String(true),
            "12345--1-100T00:00:00.1000Z");
  EXPECT_EQ(GDateTime(std::string("2009-10-11T12:13:14.156")).GetAsISO8601String(true),
            "2009-10-11T12:13:14.156Z");
  std::locale::global(host);
}

}  // namespace
