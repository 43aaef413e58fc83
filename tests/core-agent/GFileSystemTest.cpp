#include "GFileSystem.h"

#include <gmock/gmock.h>

#include "LogLines.h"

namespace {

TEST(GFileSystem, ValidFullPathsLoseTheirTrailingSeparators) {
  const struct {
    std::string path;
    bool valid;
    std::string left;
  } rows[] = {{"", false, ""},  {"a/", false, "a/"},       {"~/x/", false, "~/x/"},
              {"/", true, "/"}, {"/a/b///", true, "/a/b"}, {"//a/./../", true, "//a/./.."},
              {"///", true, ""}};
  for (const auto& row : rows) {
    std::string path = row.path;
    EXPECT_EQ(GFileSystem::OSIsValidFullPath(path), row.valid) << row.path;
    EXPECT_EQ(path, row.left);
    EXPECT_EQ(GFileSystem::OSIsPartialPath(row.path), !row.valid) << row.path;
  }
}

TEST(GFileSystem, ExpandPathTakesBytesThatAreNotUtf8ForMacOSRoman) {
  LogLines log;
  const std::pair<std::string, std::string> rows[] = {{"", ""},
                                                      {"/a/~/\xE2\x80\xA2/", "/a/~/\xE2\x80\xA2/"},
                                                      {std::string("/a\0b", 4), "/a"},
                                                      {"/a\xA5", "/a\xE2\x80\xA2"}};
  for (const auto& [path, expanded] : rows) {
    SCOPED_TRACE(path);
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
