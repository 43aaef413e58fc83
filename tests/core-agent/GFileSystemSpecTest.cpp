#include "GFileSystemSpec.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "LogLines.h"
#include "TemporaryWorkingDirectory.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(GFileSystemSpec, SetFullPathTakesFullPathsOnly) {
  const struct {
    std::string path;
    uint32_t code;
    std::string left;
  } kCases[] = {
      {"/a/b", 0, "/a/b"}, {"/a/b/", 0, "/a/b"},        {"/", 0, "/"},
      {"", 0, ""},         {"a/b", 0x04000000, "/old"}, {"/a//./b", 0, "/a//./b"},
  };
  for (const auto& c : kCases) {
    GFileSystemSpec spec("/old");
    EXPECT_EQ(spec.SetFullPath(c.path), c.code) << c.path;
    EXPECT_EQ(spec.GetFullPath(), c.left) << c.path;
  }
}

TEST(GFileSystemSpec, RefusedPathIsInTheLog) {
  LogLines log;
  GFileSystemSpec spec;
  spec.SetFullPath("a/b");
  EXPECT_THAT(log.Entries(),
              ElementsAre(CheckEntry(
                  "FileSystem", "CoreErrorCodes::kInvalidParam",
                  "!(strCopy.empty() || GFileSystem::OSIsValidFullPath(strCopy))", 0x04000000)));
}

TEST(GFileSystemSpec, ConstructorRemovesQuotesAtBothEnds) {
  EXPECT_EQ(GFileSystemSpec("\"\"/tmp/x\"\"").GetFullPath(), "/tmp/x");
  EXPECT_EQ(GFileSystemSpec("\"/tmp/\"x/").GetFullPath(), "/tmp/\"x");
  EXPECT_EQ(static_cast<std::string>(GFileSystemSpec("/tmp/x")), "/tmp/x");
}

TEST(GFileSystemSpec, ConstructorPutsPartialPathsBehindTheWorkingDirectory) {
  TemporaryWorkingDirectory directory;
  EXPECT_EQ(GFileSystemSpec("").GetFullPath(), directory.path());
  EXPECT_EQ(GFileSystemSpec("a/b/").GetFullPath(), directory.path() + "/a/b");
  EXPECT_EQ(GFileSystemSpec("\"a\"").GetFullPath(), directory.path() + "/a");

  directory.Remove();
  EXPECT_EQ(GFileSystemSpec("").GetFullPath(), "");
  EXPECT_EQ(GFileSystemSpec("a/b/").GetFullPath(), "/a/b");
}

TEST(GFileSystemSpec, AppendsComponents) {
  const struct {
    std::string path, component, left;
  } kCases[] = {
      {"/a", "x", "/a/x"}, {"/a", "/x/y/", "/a/x/y"}, {"/a", "", "/a"},
      {"/a", "/", "/a"},   {"/a", "///", "/a"},       {"", "x", "/x"},
      {"/", "x", "/x"},    {"/", "//x", "/x"},        {"/a", "x//y", "/a/x//y"},
  };
  LogLines log;
  for (const auto& c : kCases) {
    GFileSystemSpec spec;
    spec.SetFullPath(c.path);
    EXPECT_EQ(&spec.AppendPathComponent(c.component), &spec);
    EXPECT_EQ(spec.GetFullPath(), c.left) << c.path << " and " << c.component;
  }
  EXPECT_THAT(log.Entries(), IsEmpty());
}

TEST(GFileSystemSpec, RemovesOneLevelAtATime) {
  GFileSystemSpec spec("/a/b c/d");
  for (const std::string left : {"/a/b c", "/a", "/", "", ""}) {
    EXPECT_EQ(&spec.RemoveLastPathComponent(), &spec);
    EXPECT_EQ(spec.GetFullPath(), left);
  }
}

TEST(GFileSystemSpec, RemovingAComponentBehindADoubledSeparatorTakesBoth) {
  EXPECT_EQ(GFileSystemSpec("/a//b").RemoveLastPathComponent().GetFullPath(), "/a");
}

TEST(GFileSystemSpec, FindsTheLastComponent) {
  const struct {
    std::string path, last;
  } kCases[] = {
      {"/a/b", "b"},    {"/a/b/", "b"}, {"/a", "a"}, {"/", ""},    {"", ""},
      {"name", "name"}, {"a/", "a"},    {"//", ""},  {"/a//", ""}, {"/a/b.c d", "b.c d"},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(GFileSystemSpec::GetLastPathComponent(c.path), c.last) << c.path;
  }
  EXPECT_EQ(GFileSystemSpec("/a/b/").GetLastPathComponent(), "b");
  EXPECT_EQ(GFileSystemSpec().GetLastPathComponent(), "");
}

}  // namespace
