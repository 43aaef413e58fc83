#include <gmock/gmock.h>
#include <iconv.h>
#include <pwd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "AfterEachTest.h"
#include "GFileSystem.h"
#include "GFileSystemSpec.h"
#include "GSystem.h"
#include "LogLines.h"
#include "TemporaryWorkingDirectory.h"

namespace {

using testing::ElementsAre;

// This user's home in the password database of this executable, whose other user is "ann".
std::string ownHome;

const bool kOwnHomeIsReset = [] {
  const auto reset = [] { ownHome = "/home/own"; };
  reset();
  return AfterEachTest(reset);
}();

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
  EXPECT_EQ(GSystem::OSGetSystem(), 3);
  EXPECT_FALSE(GSystem::IsMacOSX());
  EXPECT_FALSE(GSystem::IsWindows());
}

TEST(GFileSystemTilde, StandsForHome) {
  const struct {
    std::string home, path, expanded;
  } rows[] = {{"/me", "~/x/", "/me/x/"},    {"/me/", "~", "/me"},
              {"/me/", "~/x", "/me/x"},     {"/", "~", "/"},
              {"/", "~/x", "/x"},           {"/me", "a/~", "a/~"},
              {"/me", "~ann", "/home/ann"}, {"/me", "~ann/x", "/home/ann/x"},
              {"/me", "~bob/x", "~bob/x"}};
  for (const auto& row : rows) {
    setenv("HOME", row.home.c_str(), 1);
    EXPECT_EQ(Expanded(row.path), row.expanded) << row.home;
  }
  EXPECT_EQ(Expanded("~/caf\x8E"), "/me/caf\xC3\xA9");
}

TEST(GFileSystem, ReadsMacOSRomanAsTheCLibraryDoesButForTwoCodes) {
  const iconv_t converter = iconv_open("UTF-8", "MACINTOSH");
  for (int code = 0x80; code <= 0xFF; ++code) {
    std::string path(1, static_cast<char>(code)), text(4, '\0');
    char *in = path.data(), *out = text.data();
    size_t inSize = path.size(), outSize = text.size();
    iconv(converter, &in, &inSize, &out, &outSize);
    text.resize(text.size() - outSize);
    EXPECT_EQ(Expanded(path), code == 0xC6 ? "\u2206" : code == 0xF0 ? "\uF8FF" : text) << code;
  }
  iconv_close(converter);
}

TEST(GFileSystemTilde, StandsForTheHomeOfThePasswordDatabaseWithoutHome) {
  unsetenv("HOME");
  EXPECT_EQ(Expanded("~"), "/home/own");
  for (const char* home : {"", "relative"}) {
    setenv("HOME", home, 1);
    EXPECT_EQ(Expanded("~/x"), "/home/own/x") << home;
  }
  ownHome = "/" + std::string(5000, 'h');
  EXPECT_EQ(Expanded("~/x"), ownHome + "/x");
  EXPECT_EQ(GFileSystemSpec("\"~/x/\"").GetFullPath(), ownHome + "/x");
}

TEST(GFileSystemTilde, FailsWithoutAHomeThatIsUtf8) {
  ownHome.clear();
  const auto failed = [](const char* expression) {
    return CheckEntry("FileSystem", "GFileSystem::kInvalidCharacterForFileSystemRepresentation",
                      expression, 0x0C001005);
  };
  for (const auto& [home, reason] : {std::pair("", "The user has no home directory"),
                                     std::pair("/m\x8E", "The home directory isn't UTF-8")}) {
    setenv("HOME", home, 1);
    std::string path = "~/x";
    EXPECT_EQ(GFileSystem::OSExpandPath(path), 0x0C001005u);
    EXPECT_EQ(path, "");

    LogLines log;
    GFileSystemSpec value("/old");
    EXPECT_EQ(value.SetFullPath("~/x"), 0x0C001005u);
    EXPECT_EQ(value.GetFullPath(), "/old");
    EXPECT_THAT(
        log.Entries(),
        ElementsAre(std::string("[FileSystem]\t[Error]\tGFileSystem::OSExpandPath(), exception "
                                "caught\n- ") +
                        reason,
                    failed("err"), failed("GFileSystem::OSExpandPath(strCopy)")));
  }
  TemporaryWorkingDirectory directory;
  EXPECT_EQ(GFileSystemSpec("~/x").GetFullPath(), directory.FullPath());
}

}  // namespace

extern "C" int getpwuid_r(uid_t, passwd* entry, char* buffer, size_t size, passwd** result) {
  return Find(ownHome, entry, buffer, size, result);
}

extern "C" int getpwnam_r(const char* name, passwd* entry, char* buffer, size_t size,
                          passwd** result) {
  *result = nullptr;
  return std::strcmp(name, "ann") ? 0 : Find("/home/ann", entry, buffer, size, result);
}
