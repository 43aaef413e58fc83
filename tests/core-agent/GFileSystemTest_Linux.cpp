#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <sys/types.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>

#include "GFileSystem.h"
#include "GFileSystemSpec.h"
#include "LogLines.h"
#include "TemporaryWorkingDirectory.h"

namespace {

using testing::ElementsAre;

// The password database of this executable: its own user and "ann", whose homes these are.
std::string own_home = "/home/own";
const std::string kAnnsHome = "/home/ann";

int Find(const std::string* home, passwd* entry, char* buffer, size_t size, passwd** result) {
  *result = nullptr;
  if (home == nullptr) return 0;
  if (home->size() >= size) return ERANGE;
  buffer[home->copy(buffer, size)] = '\0';
  entry->pw_dir = buffer;
  *result = entry;
  return 0;
}

std::string Expanded(std::string path) {
  EXPECT_EQ(GFileSystem::OSExpandPath(path), 0u);
  return path;
}

TEST(GFileSystemTilde, StandsForHome) {
  const struct {
    std::string home, path, expanded;
  } kCases[] = {
      {"/users/me", "~", "/users/me"},
      {"/users/me", "~/x/", "/users/me/x/"},
      {"/users/me/", "~", "/users/me"},
      {"/users/me/", "~/x", "/users/me/x"},
      {"/", "~", "/"},
      {"/", "~/x", "/x"},
      {"/users/me", "a/~", "a/~"},
      {"/users/me", "~ann", kAnnsHome},
      {"/users/me", "~ann/x", kAnnsHome + "/x"},
      {"/users/me", "~bob/x", "~bob/x"},
  };
  for (const auto& c : kCases) {
    setenv("HOME", c.home.c_str(), 1);
    EXPECT_EQ(Expanded(c.path), c.expanded) << c.home;
  }
}

TEST(GFileSystemTilde, StandsForTheHomeOfThePasswordDatabaseWithoutHome) {
  unsetenv("HOME");
  EXPECT_EQ(Expanded("~/x"), "/home/own/x");
  for (const char* home : {"", "relative"}) {
    setenv("HOME", home, 1);
    EXPECT_EQ(Expanded("~/x"), "/home/own/x") << home;
  }
  own_home = "/" + std::string(5000, 'h');
  EXPECT_EQ(Expanded("~/x"), own_home + "/x");
}

TEST(GFileSystemTilde, IsAcceptedInPathValues) {
  setenv("HOME", "/users/me", 1);
  EXPECT_EQ(GFileSystemSpec("\"~/x/\"").GetFullPath(), "/users/me/x");
  GFileSystemSpec spec;
  EXPECT_EQ(spec.SetFullPath("~"), 0u);
  EXPECT_EQ(spec.GetFullPath(), "/users/me");
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

  LogLines log;
  std::string path = "~/x";
  EXPECT_EQ(GFileSystem::OSExpandPath(path), 0x0C001005u);
  EXPECT_EQ(path, "");
  EXPECT_THAT(log.Entries(), ElementsAre(caught, failed("err")));

  LogLines later;
  GFileSystemSpec spec("/old");
  EXPECT_EQ(spec.SetFullPath("~/x"), 0x0C001005u);
  EXPECT_EQ(spec.GetFullPath(), "/old");
  EXPECT_THAT(later.Entries(),
              ElementsAre(caught, failed("err"), failed("GFileSystem::OSExpandPath(strCopy)")));

  TemporaryWorkingDirectory directory;
  EXPECT_EQ(GFileSystemSpec("~/x").GetFullPath(), directory.path());
}

TEST(GFileSystemTilde, IsReadInMacOSRomanToo) {
  setenv("HOME", "/users/me", 1);
  EXPECT_EQ(Expanded("~/caf\x8E"), "/users/me/caf\xC3\xA9");
}

TEST(GFileSystemMacOSRoman, CoversEveryByte) {
  // The ends of the table and what the C library's own one has otherwise.
  EXPECT_EQ(Expanded("\x7F\x80\xC6\xDB\xF0\xFF"), "\x7F\u00C4\u2206\u20AC\uF8FF\u02C7");
}

}  // namespace

extern "C" int getpwuid_r(uid_t /*uid*/, passwd* entry, char* buffer, size_t size,
                          passwd** result) {
  return Find(&own_home, entry, buffer, size, result);
}

extern "C" int getpwnam_r(const char* name, passwd* entry, char* buffer, size_t size,
                          passwd** result) {
  const bool known = std::strcmp(name, "ann") == 0;
  return Find(known ? &kAnnsHome : nullptr, entry, buffer, size, result);
}
