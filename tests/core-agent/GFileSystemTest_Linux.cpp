#include <gmock/gmock.h>
#include <pwd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "GFileSystem.h"
#include "GFileSystemSpec.h"
#include "GSystem.h"
#include "LogLines.h"
#include "TemporaryWorkingDirectory.h"

namespace {

using testing::ElementsAre;

// In the password database of this executable, which has "ann" too.
std::string own_home = "/home/own";

int Find(const std::string& home, passwd* entry, char* buffer, size_t size, passwd** result) {
  if (home.size() >= size) return ERANGE;
  entry->pw_dir = std::strcpy(buffer, home.c_str());
  *result = entry;
  return 0;
}

std::string Expanded(std::string path) {
  EXPECT_EQ(GFileSystem::OSExpandPath(path), 0u);
  return path;
}

TEST(GSystem, IsNeitherMacOSXNorWindows) {
  EXPECT_FALSE(GSystem::IsMacOSX());
  EXPECT_FALSE(GSystem::IsWindows());
}

TEST(GFileSystemTilde, StandsForHome) {
  const struct {
    std::string home, path, expanded;
  } kCases[] = {{"/me", "~/x/", "/me/x/"},    {"/me/", "~", "/me"},
                {"/me/", "~/x", "/me/x"},     {"/", "~", "/"},
                {"/", "~/x", "/x"},           {"/me", "a/~", "a/~"},
                {"/me", "~ann", "/home/ann"}, {"/me", "~ann/x", "/home/ann/x"},
                {"/me", "~bob/x", "~bob/x"}};
  for (const auto& c : kCases) {
    setenv("HOME", c.home.c_str(), 1);
    EXPECT_EQ(Expanded(c.path), c.expanded) << c.home;
  }
  EXPECT_EQ(Expanded("~/caf\x8E"), "/me/caf\xC3\xA9");
  // The ends of the table and what the C library's own one has otherwise.
  EXPECT_EQ(Expanded("\x7F\x80\xC6\xDB\xF0\xFF"), "\x7F\u00C4\u2206\u20AC\uF8FF\u02C7");
}

TEST(GFileSystemTilde, StandsForTheHomeOfThePasswordDatabaseWithoutHome) {
  unsetenv("HOME");
  EXPECT_EQ(Expanded("~"), "/home/own");
  for (const char* home : {"", "relative"}) {
    setenv("HOME", home, 1);
    EXPECT_EQ(Expanded("~/x"), "/home/own/x") << home;
  }
  own_home = "/" + std::string(5000, 'h');
  EXPECT_EQ(Expanded("~/x"), own_home + "/x");
  EXPECT_EQ(GFileSystemSpec("\"~/x/\"").GetFullPath(), own_home + "/x");
}

TEST(GFileSystemTilde, FailsWithoutAnyHome) {
  unsetenv("HOME");
  own_home.clear();
  const std::string caught =
      "[FileSystem]\t[Error]\tGFileSystem::OSExpandPath(), exception caught\n- The user has no "
      "home directory";
  const auto failed = [](const char* expression) {
    return CheckEntry("FileSystem", "GFileSystem::kInvalidCharacterForFileSystemRepresentation",
                      expression, 0x0C001005);
  };

  std::string path = "~/x";
  EXPECT_EQ(GFileSystem::OSExpandPath(path), 0x0C001005u);
  EXPECT_EQ(path, "");

  LogLines log;
  GFileSystemSpec value("/old");
  EXPECT_EQ(value.SetFullPath("~/x"), 0x0C001005u);
  EXPECT_EQ(value.GetFullPath(), "/old");
  EXPECT_THAT(log.Entries(),
              ElementsAre(caught, failed("err"), failed("GFileSystem::OSExpandPath(strCopy)")));

  TemporaryWorkingDirectory directory;
  EXPECT_EQ(GFileSystemSpec("~/x").GetFullPath(), directory.FullPath());
}

}  // namespace

extern "C" int getpwuid_r(uid_t, passwd* entry, char* buffer, size_t size, passwd** result) {
  return Find(own_home, entry, buffer, size, result);
}

extern "C" int getpwnam_r(const char* name, passwd* entry, char* buffer, size_t size,
                          passwd** result) {
  *result = nullptr;
  return std::strcmp(name, "ann") ? 0 : Find("/home/ann", entry, buffer, size, result);
}
