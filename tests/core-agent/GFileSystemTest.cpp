#include "GFileSystem.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "GFileSystemSpec.h"
#include "LogLines.h"
#include "TemporaryWorkingDirectory.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(GFileSystem, ValidFullPathsLoseTheirTrailingSeparators) {
  const struct {
    std::string path;
    bool valid;
    std::string left;
  } kCases[] = {
      {"", false, ""},           {"a/b", false, "a/b"},
      {"a/", false, "a/"},       {"~/x/", false, "~/x/"},
      {"/", true, "/"},          {"/a/b", true, "/a/b"},
      {"/a/b///", true, "/a/b"}, {"//a/./../", true, "//a/./.."},
      {"///", true, ""},
  };
  for (const auto& c : kCases) {
    std::string path = c.path;
    EXPECT_EQ(GFileSystem::OSIsValidFullPath(path), c.valid) << c.path;
    EXPECT_EQ(path, c.left) << c.path;
    EXPECT_EQ(GFileSystem::OSIsPartialPath(c.path), !c.valid) << c.path;
  }
}

TEST(GFileSystem, ExpandPathLeavesPathsWithoutTildeAlone) {
  LogLines log;
  for (const std::string path : {"", "/", "docs/a", "/a/~/b", "/a/\xE2\x80\xA2/"}) {
    std::string expanded = path;
    EXPECT_EQ(GFileSystem::OSExpandPath(expanded), 0u);
    EXPECT_EQ(expanded, path);
  }
  EXPECT_THAT(log.Entries(), IsEmpty());
}

TEST(GFileSystem, ExpandPathReadsUpToTheFirstNul) {
  std::string path("/a\0b", 4);
  EXPECT_EQ(GFileSystem::OSExpandPath(path), 0u);
  EXPECT_EQ(path, "/a");
}

TEST(GFileSystem, ExpandPathTakesOtherBytesForMacOSRoman) {
  LogLines log;
  std::string path = "/a\xA5";
  EXPECT_EQ(GFileSystem::OSExpandPath(path), 0u);
  EXPECT_EQ(path, "/a\xE2\x80\xA2");
  EXPECT_THAT(
      log.Entries(),
      ElementsAre(
          "[FileSystem]\t[Warning]\tGFileSystem::OSExpandPath(), called with invalid UTF8 Path. "
          "Attempting convserion with other encodings."));
}

TEST(GFileSystem, WorkingDirectoryIsEmptyOnceItIsGone) {
  TemporaryWorkingDirectory directory;
  EXPECT_EQ(GFileSystem::OSGetCWD().GetFullPath(), directory.path());

  directory.Remove();
  LogLines log;
  EXPECT_EQ(GFileSystem::OSGetCWD().GetFullPath(), "");
  EXPECT_THAT(log.Entries(),
              ElementsAre(CheckEntry("FileSystem", "CoreErrorCodes::kError",
                                     "NULL == getcwd(&curPath[0], PATH_MAX)", 0x01000000)));
}

}  // namespace
