#include "GStringUtils.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAreArray;

TEST(GStringUtils, SplitKeepsEmptyPieces) {
  const struct {
    std::string text, delimiter;
    std::vector<std::string> pieces;
  } kCases[] = {
      {"", ",", {""}},          {"abc", "", {"abc"}},
      {"a,b", ",", {"a", "b"}}, {"a,b,", ",", {"a", "b", ""}},
      {",a", ",", {"", "a"}},   {"a,,b", ",", {"a", "", "b"}},
      {",", ",", {"", ""}},     {"abc", "abc", {"", ""}},
      {"a", "abc", {"a"}},      {"a--b-c--", "--", {"a", "b-c", ""}},
      {"aaa", "aa", {"", "a"}}, {std::string("a\0b", 3), std::string(1, '\0'), {"a", "b"}},
  };
  for (const auto& c : kCases) {
    EXPECT_THAT(GStringUtils::Split(c.text, c.delimiter), ElementsAreArray(c.pieces))
        << c.text << " at " << c.delimiter;
  }
}

TEST(GStringUtils, StripPrecedingStringRemovesTheWholeRun) {
  const struct {
    std::string text, prefix, rest;
  } kCases[] = {
      {"aab", "a", "b"}, {"aaa", "a", ""}, {"ba", "a", "ba"}, {"ababac", "ab", "ac"},
      {"", "a", ""},     {"ab", "", "ab"}, {"a", "ab", "a"},  {"Aa", "a", "Aa"},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(GStringUtils::StripPrecedingString(c.text, c.prefix), c.rest) << c.text;
  }
}

TEST(GStringUtils, StripPrecedingStringEndsTheRestAtItsFirstNul) {
  const std::string text("ab\0c", 4);
  EXPECT_EQ(GStringUtils::StripPrecedingString(text, "a"), "b");
  EXPECT_EQ(GStringUtils::StripPrecedingString(text, "x"), text);
}

TEST(GStringUtils, StripTrailingStringRemovesTheWholeRun) {
  const struct {
    std::string text, suffix, rest;
  } kCases[] = {
      {"a///", "/", "a"},   {"abab", "ab", ""}, {"ab", "abc", "ab"}, {"/a", "/", "/a"},
      {"cabab", "ab", "c"}, {"aaa", "aa", "a"}, {"", "a", ""},       {"ab", "", "ab"},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(GStringUtils::StripTrailingString(c.text, c.suffix), c.rest) << c.text;
  }
}

TEST(GStringUtils, BeginsAndEndsWithCompareExactly) {
  const struct {
    std::string text, part;
    bool begins, ends;
  } kCases[] = {
      {"", "", true, true},           {"ab", "", true, true},      {"ab", "abc", false, false},
      {"Path", "path", false, false}, {"abcab", "ab", true, true}, {"abc", "b", false, false},
      {"abc", "a", true, false},      {"abc", "bc", false, true},  {"", "a", false, false},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(GStringUtils::BeginsWith(c.text, c.part), c.begins) << c.text << ", " << c.part;
    EXPECT_EQ(GStringUtils::EndsWith(c.text, c.part), c.ends) << c.text << ", " << c.part;
  }
}

TEST(GStringUtils, ToLowerCaseLeavesUtf8Alone) {
  EXPECT_EQ(GStringUtils::OSToLowerCase("FileSystem"), "filesystem");
  EXPECT_EQ(GStringUtils::OSToLowerCase("\xC3\x84 AZ[\xFF"), "\xC3\x84 az[\xFF");
}

}  // namespace
