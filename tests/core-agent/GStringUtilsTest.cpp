#include "GStringUtils.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;

TEST(GStringUtils, SplitsAndStripsByWholeParts) {
  EXPECT_THAT(GStringUtils::Split("a,,b,", ","), ElementsAre("a", "", "b", ""));
  EXPECT_THAT(GStringUtils::Split("aaa", "aa"), ElementsAre("", "a"));
  EXPECT_THAT(GStringUtils::Split("", ""), ElementsAre(""));
  EXPECT_EQ(GStringUtils::StripPrecedingString("ababac", "ab"), "ac");
  EXPECT_EQ(GStringUtils::StripPrecedingString(std::string("ab\0c", 4), "a"), "b");
  EXPECT_EQ(GStringUtils::StripTrailingString("aaa", "aa"), "a");
  EXPECT_EQ(GStringUtils::StripTrailingString("ab", ""), "ab");
  EXPECT_TRUE(GStringUtils::BeginsWith("abcab", "ab") && GStringUtils::EndsWith("abcab", "ab"));
  EXPECT_FALSE(GStringUtils::BeginsWith("Path", "path") || GStringUtils::EndsWith("b", "ab"));
  EXPECT_EQ(GStringUtils::OSToLowerCase("\xC3\x84 AZ[\xFF"), "\xC3\x84 az[\xFF");
}

}  // namespace
