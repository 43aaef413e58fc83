#include "GLogger.h"

#include <gmock/gmock.h>

#include <functional>

#include "LogLines.h"
#include "PosixFakes.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;

using Level = GLogger::LoggingLevel;

constexpr Level kError = GLogger::kLoggingLevelError, kWarning = GLogger::kLoggingLevelWarning,
                kInfo = GLogger::kLoggingLevelInfo, kDebug = GLogger::kLoggingLevelDebug;

struct HookedAppender : GLogAppender {
  explicit HookedAppender(
      std::function<void()> onAppend, std::function<void()> onDelete = [] {})
      : mOnAppend(std::move(onAppend)), mOnDelete(std::move(onDelete)) {}
  ~HookedAppender() override { mOnDelete(); }
  void Append(const std::string&) override { mOnAppend(); }
  std::function<void()> mOnAppend, mOnDelete;
};

TEST(GLogger, EachThresholdPassesItsOwnLevelAndMoreSevereOnes) {
  GLogger logger;
  for (int row = 0; row < 36; ++row) {
    const auto threshold = static_cast<Level>(row / 6 - 1), level = static_cast<Level>(row % 6 - 1);
    logger.SetLoggingLevelForIdentifier("id", threshold);
    EXPECT_EQ(logger.ShouldLog("id", level), level >= kError && level <= threshold)
        << "level " << level << " at threshold " << threshold;
  }
}

TEST(GLogger, IdentifiersWithoutAThresholdHaveThatOfDefault) {
  GLogger logger;
  EXPECT_EQ(logger.GetLoggingLevelForIdentifier("FileSystem"), kWarning);
  logger.SetLoggingLevelForIdentifier("DEFAULT", kInfo);
  logger.SetLoggingLevelForIdentifier("fileSystem", kDebug);
  EXPECT_EQ(logger.GetLoggingLevelForIdentifier("Default"), kInfo);
  EXPECT_EQ(logger.GetLoggingLevelForIdentifier("FileSystem"), kDebug);
  EXPECT_EQ(logger.GetLoggingLevelForIdentifier("FileSystem.Paths"), kInfo);
  logger.ResetAllLoggingLevels();
  EXPECT_EQ(logger.GetLoggingLevelForIdentifier("FileSystem"), kWarning);
}

TEST(GLogger, ALineHoldsTimeIdentifierLevelAndMessage) {
  GLogger logger;
  const LogLines log("test", logger);
  logger.SetLoggingLevelForIdentifier("Lockable", kDebug);
  logger.Log("FileSystem", kError, "%s is %d of %.1f", "this", 1, 2.5);
  logger.Log("FileSystem", kInfo, "below the threshold");
  logger.LogWarning("MixedCase", "%d%%", 7);
  logger.Log("Lockable", kInfo, "plain");
  logger.Log("Lockable", kDebug, "plain");
  EXPECT_THAT(log.Entries(),
              ElementsAre("[FileSystem]\t[Error]\tthis is 1 of 2.5", "[MixedCase]\t[Warning]\t7%",
                          "[Lockable]\t[Info]\tplain", "[Lockable]\t[Debug]\tplain"));
  EXPECT_THAT(log.Lines()[3], MatchesRegex("\\[....-..-..T..:..:..\\....Z\\]\t.Lockable.\t.*\n"));
  const auto text = [](int level) { return GLogger::LevelToString(static_cast<Level>(level)); };
  EXPECT_EQ(text(-1) + text(0) + text(5), "None");
}

TEST(GLogger, ALineHoldsItsWholeTextAtTheEdgesOfTheBuffer) {
  GLogger logger;
  const LogLines log("test", logger);
  const std::string prefix = "[id]\t[Error]\t";
  for (const size_t length : {255u, 256u, 511u, 512u, 100u, 5000u, 20u}) {
    const std::string text(length - prefix.size(), 'x');
    logger.LogError("id", "%s", text.c_str());
    EXPECT_EQ(log.Entries().back(), prefix + text) << length;
  }
}

TEST(GLogger, AFormatErrorCostsTheMessageAndNotTheLine) {
  GLogger logger;
  const LogLines log("test", logger);
  logger.LogError("id", "a text that must not show through");
  posixFakes.formatFails = true;
  logger.LogError("id", "%d", 1);
  posixFakes.formatFails = false;
  logger.LogError("id", "next");
  EXPECT_THAT(log.Lines(), ElementsAre(testing::_, MatchesRegex("[^\t]+Z\\]\t\n"),
                                       testing::EndsWith("\t[id]\t[Error]\tnext\n")));
}

TEST(GLogger, EntriesOfAnAppenderAreDropped) {
  // Gets the reports of failed locks, unless the logger knows that this thread delivers a line.
  const LogLines reports;
  GLogger::GetSharedInstance()->SetLoggingLevelForIdentifier("Lockable", kDebug);
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
  EXPECT_THAT(reports.Entries(), IsEmpty());
}

TEST(GLogger, AThreadLogsAgainAfterAnAppenderHasThrown) {
  GLogger logger;
  logger.AddAppender("a", std::make_unique<HookedAppender>([] { throw 1; }));
  EXPECT_THROW(logger.LogError("id", "lost"), int);
  const LogLines log("a", logger);
  logger.LogError("id", "next");
  EXPECT_THAT(log.Entries(), ElementsAre("[id]\t[Error]\tnext"));
}

TEST(GLogger, AppendersAreCalledAndDeletedInTheOrderOfTheirKeys) {
  std::string events;
  GLogger logger;
  const auto add = [&](const std::string& key, const std::string& name) {
    const auto onDelete = [&, name] {
      events += "~" + name;
      // A replaced appender may log.
      if (name == "b") logger.LogError("id", "x");
    };
    logger.AddAppender(key,
                       std::make_unique<HookedAppender>([&, name] { events += name; }, onDelete));
  };
  for (const char* key : {"b", "a", "c"}) add(key, key);
  logger.LogError("id", "x");
  add("b", "B");
  EXPECT_EQ(events, "abc~baBc");
  logger.RemoveAllAppenders();
  logger.LogError("id", "x");
  EXPECT_EQ(events, "abc~baBc~a~B~c");
}

}  // namespace
