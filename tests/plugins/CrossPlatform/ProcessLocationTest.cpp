#include "ProcessLocation.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <sstream>

#include "CoreErrorCodes.h"
#include "GetPathToRunningProcess.h"
#include "TemporaryFolder.h"

namespace {

TEST(ReadConfiguredValue, FirstLineWithTheKeyAndAValueWins) {
  const std::string megabyte(1 << 20, 'm');
  const std::string none = "untouched";
  const std::pair<std::string, std::string> cases[] = {{"k=/a/b\n", "/a/b"},
                                                       {"k=/a/b\r\nk=/c\r\n", "/a/b"},
                                                       {"# k=/a\n", "/a"},
                                                       {"k.old=/a\nk=/b\n", "/a"},
                                                       {"k = /a=b \n", " /a=b "},
                                                       {"k\nk=/b\n", "/b"},
                                                       {"k\r=/a\nk=/b\n", "/b"},
                                                       {"k=\nk=/b\n", ""},
                                                       {"", none},
                                                       {std::string("k\0=/a\nk=/b\n", 11), "/b"},
                                                       {"k=\xFF\xFE\n", "\xFF\xFE"},
                                                       {"k=" + megabyte, megabyte}};
  for (const auto& [text, expected] : cases) {
    std::istringstream stream(text);
    std::string value = none;
    EXPECT_EQ(ReadConfiguredValue(stream, "k", value), expected != none) << text.substr(0, 40);
    EXPECT_EQ(value, expected);
  }
  std::istringstream failed("k=/a");
  failed.setstate(std::ios::failbit);
  std::string value;
  EXPECT_FALSE(ReadConfiguredValue(failed, "k", value));
}

TEST(GetFolderIfExecutableIs, TakesTheExactNameOnly) {
  std::string folder = "untouched";
  EXPECT_FALSE(GetFolderIfExecutableIs("Oxbrim", "/Apps/oxbrim", folder));
  EXPECT_FALSE(GetFolderIfExecutableIs("Oxbrim", "/Apps/Oxbrim2", folder));
  EXPECT_FALSE(GetFolderIfExecutableIs("Oxbrim", "/Oxbrim/x", folder));
  EXPECT_EQ(folder, "untouched");
  EXPECT_TRUE(GetFolderIfExecutableIs("Oxbrim", "/Apps/My Core/Oxbrim", folder));
  EXPECT_EQ(folder, "/Apps/My Core/");
}

TEST(GetConfiguredPath, AnswersQuietlyForWhatIsNoFile) {
  TemporaryFolder home;
  setenv("HOME", home.path().c_str(), 1);
  std::string value = "untouched";
  EXPECT_EQ(GetConfiguredPath("Folder", "file", "k", value), CoreErrorCodes::kUnknownError);
  std::filesystem::create_directories(home.path() / "Library/Folder/file");
  EXPECT_EQ(GetConfiguredPath("Folder", "file", "k", value), CoreErrorCodes::kUnknownError);
  EXPECT_EQ(value, "untouched");
  std::filesystem::remove(home.path() / "Library/Folder/file");
  home.Write("Library/Folder/file", "k=v");
  EXPECT_EQ(GetConfiguredPath("Folder", "file", "k", value), CoreErrorCodes::kSuccess);
  EXPECT_EQ(value, "v");
  // A file that can't be opened, also for a user who may read every file.
  rlimit limit;
  getrlimit(RLIMIT_NOFILE, &limit);
  const rlimit none{0, limit.rlim_max};
  setrlimit(RLIMIT_NOFILE, &none);
  EXPECT_EQ(GetConfiguredPath("Folder", "file", "k", value), CoreErrorCodes::kUnknownError);
  setrlimit(RLIMIT_NOFILE, &limit);
}

}  // namespace
