#include "GLogger.h"

#include <gmock/gmock.h>

#include <clocale>
#include <functional>

#include "LogLines.h"
#include "PosixFakes.h"
#include "StoppedClock.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Level = GLogger::LoggingLevel;

constexpr Level kUnset = GLogger::kLoggingLevelUnset;
constexpr Level kNone = GLogger::kLoggingLevelNone;
constexpr Level kError = GLogger::kLoggingLevelError;
constexpr Level kWarning = GLogger::kLoggingLevelWarning;
constexpr Level kInfo = GLogger::kLoggingLevelInfo;
constexpr Level kDebug = GLogger::kLoggingLevelDebug;

class HookedAppender : public GLogAppender {
 public:
  explicit HookedAppender(
      std::function<void()> onAppend, std::function<void()> onDelete = [] {})
      : mOnAppend(std::move(onAppend)), mOnDelete(std::move(onDelete)) {}
  ~HookedAppender() override { mOnDelete(); }
  void Append(const std::string&) override { mOnAppend(); }

 private:
  std::function<void()> mOnAppend;
  std::function<void()> mOnDelete;
};

TEST(GLogger, EachThresholdPassesItsOwnLevelAndTheGraverOnes) {
  GLogger logger;
  for (const Level threshold : {kUnset, kNone, kError, kWarning, kInfo, kDebug}) {
    logger.SetLoggingLevelForIdentifier("id", threshold);
    for (const Level level : {kUnset, kNone, kError, kWarning, kInfo, kDebug}) {
      EXPECT_EQ(logger.ShouldLog("id", level), level >= kError && level <= threshold)
          << "threshold " << threshold << ", level " << level;
    }
  }
}

TEST(GLogger, IdentifiersWithoutAThresholdHaveThatOfDefault) {
  GLogger logger;
  EXPECT_EQ(logger.GetDefaultLoggingIdentifier(), "default");
  EXPECT_EQ(logger.GetLoggingLevelForIdentifier("FileSystem"), kWarning);
  logger.SetLoggingLevelForIdentifier("DEFAULT", kInfo);
  EXPECT_EQ(logger.GetLoggingLevelForIdentifier("default"), kInfo);
  EXPECT_EQ(logger.GetLoggingLevelForIdentifier("Default"), kInfo);
  logger.SetLoggingLevelForIdentifier("fileSystem", kDebug);
  EXPECT_EQ(logger.GetLoggingLevelForIdentifier("FileSystem"), kDebug);
  EXPECT_EQ(logger.GetLoggingLevelForIdentifier("FileSystem.Paths"), kInfo);
  logger.ResetAllLoggingLevels();
  EXPECT_EQ(logger.GetLoggingLevelForIdentifier("FileSystem"), kWarning);
}

TEST(GLogger, LevelsOutsideTheTableHaveNoText) {
  const std::pair<int, const char*> rows[] = {{-2, ""},     {-1, ""},       {0, "None"},
                                              {1, "Error"}, {2, "Warning"}, {3, "Info"},
                                              {4, "Debug"}, {5, ""}};
  for (const auto& [level, text] : rows) {
    EXPECT_EQ(GLogger::LevelToString(static_cast<Level>(level)), text) << level;
  }
}

TEST(GLogger, ALineHoldsTimeIdentifierLevelAndMessage) {
  GLogger logger;
  const LogLines log("test", logger);
  logger.Log("FileSystem", kError, "%s is %d of %.1f", "this", 1, 2.5);
  logger.LogError("Lockable", "%d%%", 7);
  logger.LogWarning("MixedCase", "plain");
  logger.Log("FileSystem", kInfo, "below the threshold");
  EXPECT_THAT(log.Entries(),
              ElementsAre("[FileSystem]\t[Error]\tthis is 1 of 2.5", "[Lockable]\t[Error]\t7%",
                          "[MixedCase]\t[Warning]\tplain"));
  for (const std::string& line : log.Lines()) {
    EXPECT_TRUE(std::regex_match(
        line, std::regex(R"(\[\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z\]\t\[\w+\]\t\[\w+\]\t.*\n)")))
        << line;
  }
}

TEST(GLogger, TheBufferGrowsInStepsAndOnlyForTextThatDoesNotFit) {
  GLogger logger;
  std::vector<size_t> sizes;
  formatBufferSizes = &sizes;
  logger.LogError("id", "nobody takes this");
  formatBufferSizes = nullptr;
  EXPECT_THAT(sizes, IsEmpty());

  const struct {
    size_t length;
    std::vector<size_t> sizes;
  } rows[] = {{255, {256}}, {256, {256, 512}},   {511, {512}},         {512, {512, 768}},
              {100, {768}}, {1023, {768, 1280}}, {5000, {1280, 5120}}, {20, {5120}}};
  const std::string prefix = "[id]\t[Error]\t";
  const LogLines log("test", logger);
  for (const auto& row : rows) {
    sizes.clear();
    const std::string text(row.length - prefix.size(), 'x');
    formatBufferSizes = &sizes;
    logger.LogError("id", "%s", text.c_str());
    formatBufferSizes = nullptr;
    EXPECT_EQ(sizes, row.sizes) << row.length;
    EXPECT_EQ(log.Entries().back(), prefix + text);
  }
}

TEST(GLogger, AFormatErrorCostsTheMessageAndNotTheLine) {
  GLogger logger;
  const LogLines log("test", logger);
  logger.LogError("id", "a text that must not show through");
  // What a platform does on the way to the first line may be to set the user's locale.
  std::setlocale(LC_ALL, "C");
  logger.LogError("id", "%ls", L"\u20ac");  // not to be had in the C locale
  logger.LogError("id", "next");
  ASSERT_EQ(log.Lines().size(), 3u);
  EXPECT_TRUE(std::regex_match(log.Lines()[1], std::regex(R"(\[[^\]]+Z\]\t\n)"))) << log.Lines()[1];
  EXPECT_EQ(log.Entries()[2], "[id]\t[Error]\tnext");
}

TEST(GLogger, AClockThatFailsCostsTheTimeAndNotTheLine) {
  const LogLines log;
  StopTheClock();
  GLogger::GetSharedInstance()->LogError("id", "one");
  GLogger::GetSharedInstance()->LogError("id", "two");
  // The clock's own entry is dropped, because this thread is delivering a line.
  EXPECT_THAT(log.Lines(), ElementsAre("[]\t[id]\t[Error]\tone\n", "[]\t[id]\t[Error]\ttwo\n"));
}

TEST(GLogger, WhatAnAppenderLogsItselfIsDropped) {
  GLogger logger;
  const LogLines first("a", logger);
  int nested = 0;
  logger.AddAppender("b", std::make_unique<HookedAppender>([&] {
                       ++nested;
                       logger.LogError("id", "from inside");
                       logger.RemoveAllAppenders();
                       logger.AddAppender("d", std::make_unique<HookedAppender>([] {}));
                     }));
  const LogLines last("c", logger);
  logger.LogError("id", "one");
  logger.LogError("id", "two");
  EXPECT_EQ(nested, 2);
  EXPECT_THAT(last.Entries(), ElementsAre("[id]\t[Error]\tone", "[id]\t[Error]\ttwo"));
  EXPECT_EQ(first.Lines(), last.Lines());
}

TEST(GLogger, AppendersAreCalledAndDeletedInTheOrderOfTheirKeys) {
  std::string events;
  const auto appender = [&](const std::string& name) {
    return std::make_unique<HookedAppender>([&events, name] { events += name; },
                                            [&events, name] { events += "~" + name; });
  };
  {
    GLogger logger;
    logger.AddAppender("b", appender("b"));
    logger.AddAppender("a", appender("a"));
    logger.AddAppender("c", appender("c"));
    logger.LogError("id", "x");
    EXPECT_EQ(events, "abc");
    logger.AddAppender("b", appender("B"));
    EXPECT_EQ(events, "abc~b");
    logger.RemoveAllAppenders();
    EXPECT_EQ(events, "abc~b~a~B~c");
    logger.LogError("id", "x");
    logger.AddAppender("d", appender("d"));
  }
  EXPECT_EQ(events, "abc~b~a~B~c~d");
}

}  // namespace
