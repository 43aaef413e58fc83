#include "GFileSystem.h"

#include <gmock/gmock.h>

#include "LogLines.h"

namespace {

TEST(GFileSystem, ValidFullPathsLoseTheirTrailingSeparators) {
  const struct {
    std::string path;
    bool valid;
    std::string left;
  } kCases[] = {{"", false, ""},  {"a/", false, "a/"},       {"~/x/", false, "~/x/"},
                {"/", true, "/"}, {"/a/b///", true, "/a/b"}, {"//a/./../", true, "//a/./.."},
                {"///", true, ""}};
  for (const auto& c : kCases) {
    std::string path = c.path;
    EXPECT_EQ(GFileSystem::OSIsValidFullPath(path), c.valid) << c.path;
    EXPECT_EQ(path, c.left);
    EXPECT_EQ(GFileSystem::OSIsPartialPath(c.path), !c.valid) << c.path;
  }
}

TEST(GFileSystem, ExpandPathTakesBytesThatAreNotUtf8ForMacOSRoman) {
  LogLines log;
  const std::pair<std::string, std::string> kCases[] = {
      {"", ""},
      {"/a/~/\xE2\x80\xA2/", "/a/~/\xE2\x80\xA2/"},
      {std::string("/a\0b", 4), "/a"},
      {"/a\xA5", "/a\xE2\x80\xA2"}};
  for (const auto& [path, expanded] : kCases) {
    std::string result = path;
    EXPECT_EQ(GFileSystem::OSExpandPath(result), 0u);
    EXPECT_EQ(result, expanded);
  }
  EXPECT_THAT(
      log.Entries(),
      testing::ElementsAre("[FileSystem]\t[Warning]\tGFileSystem::OSExpandPath(), called with "
                           "invalid UTF8 Path. Attempting convserion with other encodings."));
}

}  // namespace
