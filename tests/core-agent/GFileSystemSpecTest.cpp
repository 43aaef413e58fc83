#include "GFileSystemSpec.h"

#include <gmock/gmock.h>

#include "LogLines.h"
#include "TemporaryWorkingDirectory.h"

namespace {

using testing::ElementsAre;

TEST(GFileSystemSpec, SetFullPathTakesFullPathsOnly) {
  const std::pair<std::string, std::string> rows[] = {
      {"/a/b/", "/a/b"}, {"/", "/"}, {"", ""}, {"/a//./b", "/a//./b"}};
  for (const auto& [path, left] : rows) {
    GFileSystemSpec value("/old");
    EXPECT_EQ(value.SetFullPath(path), 0u) << path;
    EXPECT_EQ(value.GetFullPath(), left) << path;
  }
  GFileSystemSpec value("/old");
  LogLines log;
  EXPECT_EQ(value.SetFullPath("a/b"), 0x04000000u);
  EXPECT_EQ(value.GetFullPath(), "/old");
  EXPECT_THAT(log.Entries(),
              ElementsAre(CheckEntry(
                  "FileSystem", "CoreErrorCodes::kInvalidParam",
                  "!(strCopy.empty() || GFileSystem::OSIsValidFullPath(strCopy))", 0x04000000)));
}

TEST(GFileSystemSpec, ConstructorRemovesQuotesAndAppendsPartialPathsToTheWorkingDirectory) {
  TemporaryWorkingDirectory directory;
  const std::string folder = directory.FullPath();
  EXPECT_EQ(GFileSystemSpec("\"\"/tmp/x\"\"").GetFullPath(), "/tmp/x");
  EXPECT_EQ(GFileSystemSpec("\"/tmp/\"x/").GetFullPath(), "/tmp/\"x");
  EXPECT_EQ(GFileSystemSpec("").GetFullPath(), folder);
  EXPECT_EQ(GFileSystemSpec("\"a/b/\"").GetFullPath(), folder + "/a/b");

  directory.Remove();
  LogLines log;
  EXPECT_EQ(GFileSystemSpec("").GetFullPath(), "");
  EXPECT_THAT(log.Entries(),
              ElementsAre(CheckEntry("FileSystem", "CoreErrorCodes::kError",
                                     "NULL == getcwd(&curPath[0], PATH_MAX)", 0x01000000)));
  EXPECT_EQ(GFileSystemSpec("a/b/").GetFullPath(), "/a/b");
}

TEST(GFileSystemSpec, AppendsComponents) {
  const struct {
    std::string path, component, left;
  } rows[] = {{"/a", "/x/y/", "/a/x/y"}, {"/a", "", "/a"},   {"/a", "///", "/a"},
              {"", "x", "/x"},           {"/", "//x", "/x"}, {"/a", "x//y", "/a/x//y"}};
  for (const auto& row : rows) {
    GFileSystemSpec value;
    value.SetFullPath(row.path);
    EXPECT_EQ(value.AppendPathComponent(row.component).GetFullPath(), row.left)
        << row.path << " + " << row.component;
  }
}

TEST(GFileSystemSpec, RemovesOneLevelAtATimeAndDoubledSeparatorsWithIt) {
  GFileSystemSpec value("/a/b c//d");
  for (const std::string left : {"/a/b c", "/a", "/", "", ""}) {
    EXPECT_EQ(value.RemoveLastPathComponent().GetFullPath(), left);
  }
}

TEST(GFileSystemSpec, FindsTheLastComponent) {
  const std::pair<std::string, std::string> rows[] = {
      {"/a/b.c d/", "b.c d"}, {"/a", "a"}, {"/", ""}, {"", ""}, {"name", "name"}, {"/a//", ""}};
  for (const auto& [path, last] : rows) {
    EXPECT_EQ(GFileSystemSpec::GetLastPathComponent(path), last) << path;
  }
  EXPECT_EQ(GFileSystemSpec("/a/b/").GetLastPathComponent(), "b");
}

}  // namespace
