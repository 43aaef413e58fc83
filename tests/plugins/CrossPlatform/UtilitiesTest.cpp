#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "DebugUtils.h"
#include "LoadFrameworkTest.h"
#include "TraceLog.h"
#include "VeldraneFileUtils.h"

namespace {

using testing::ElementsAre;

TEST(OutputIndentedAndFormattedString, AppliesTheIndentAndCutsTheText) {
  const std::string longText(70000, 'x');
  OutputIndentedAndFormattedString(0, "%s", longText.c_str());
  TraceLog traces;
  OutputIndentedAndFormattedString(+1, "begin %d", 1);
  OutputIndentedAndFormattedString(0, "%s", longText.c_str());
  OutputIndentedAndFormattedString(-1, "end");
  EXPECT_THAT(traces.lines, ElementsAre("begin 1", "  " + longText.substr(0, 65535), "end"));
}

TEST_F(LoadFrameworkTest, GivesTheDeclaredVersionCutToItsBuffer) {
  for (const char* text : {"1.2", "1234567", "12345678901234"}) {
    EXPECT_TRUE(Load(Framework(Version(text))));
    EXPECT_EQ(version.data(), std::string(text).substr(0, 7));
  }
  for (const char* entry : {"", "<key>CFBundleShortVersionString</key><integer>16</integer>"}) {
    std::fill(version.begin(), version.end() - 1, '-');
    EXPECT_TRUE(Load(Framework(entry)));
    EXPECT_STREQ(version.data(), "-------");
  }
}

TEST_F(LoadFrameworkTest, GivesNullWhereThereIsNoDirectory) {
  EXPECT_FALSE(Load(folder.path() / "nowhere"));
  EXPECT_FALSE(Load(folder.Write("file", "text")));
}

TEST_F(LoadFrameworkTest, FindsExportsByName) {
  void* bundle = Load(TAMBERLINK_FRAMEWORK);
  ASSERT_NE(bundle, nullptr);
  EXPECT_NE(GetFunctionPtr(bundle, "PluginIsEnabled"), nullptr);
  EXPECT_EQ(GetFunctionPtr(bundle, "pluginIsEnabled"), nullptr);
  EXPECT_EQ(GetFunctionPtr(nullptr, "PluginIsEnabled"), nullptr);
}

TEST(GetFileModificationDate, IsInWholeSecondsAnd0OnFailure) {
  TemporaryFolder folder;
  const auto file = folder.Write("é.aep", "");
  // The fraction is the largest that a double can tell from the next second.
  for (const timespec date : {timespec{1'600'000'000, 999'999'000}, timespec{-5, 0}}) {
    const timespec both[] = {date, date};
    ASSERT_EQ(utimensat(AT_FDCWD, file.c_str(), both, 0), 0);
    EXPECT_EQ(VeldraneFileUtils::GetFileModificationDate(file.c_str()), date.tv_sec);
  }
  EXPECT_EQ(VeldraneFileUtils::GetFileModificationDate((folder.path() / "no").c_str()), 0);
  const auto invalid = folder.Write("\xFF.aep", "");
  EXPECT_EQ(VeldraneFileUtils::GetFileModificationDate(invalid.c_str()), 0);
}

}  // namespace
