#include "GetPathToRunningProcess.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include "CoreErrorCodes.h"
#include "TemporaryFolder.h"

namespace {

class GetConfiguredPathTest : public testing::Test {
 protected:
  GetConfiguredPathTest() { setenv("HOME", home.path().c_str(), 1); }

  // Returns the value, or `kNone`.
  static std::string Value() {
    std::string value = kNone;
    const uint32_t result = GetConfiguredPath("Folder", "file", "k", value);
    EXPECT_EQ(result, value == kNone ? CoreErrorCodes::kUnknownError : CoreErrorCodes::kSuccess);
    return value;
  }

  static constexpr char kNone[] = "untouched";
  TemporaryFolder home;
};

TEST_F(GetConfiguredPathTest, FirstLineWithTheKeyAndAValueWins) {
  const std::string megabyte(1 << 20, 'm');
  const std::pair<std::string, std::string> cases[] = {{"k=/a/b\n", "/a/b"},
                                                       {"k=/a/b\r\nk=/c\r\n", "/a/b"},
                                                       {"# k=/a\n", "/a"},
                                                       {"k.old=/a\nk=/b\n", "/a"},
                                                       {"k = /a=b \n", " /a=b "},
                                                       {"k\nk=/b\n", "/b"},
                                                       {"k\r=/a\nk=/b\n", "/b"},
                                                       {"k=\nk=/b\n", ""},
                                                       {"", kNone},
                                                       {std::string("k\0=/a\nk=/b\n", 11), "/b"},
                                                       {"k=\xFF\xFE\n", "\xFF\xFE"},
                                                       {"k=" + megabyte, megabyte}};
  for (const auto& [text, expected] : cases) {
    home.Write("Library/Folder/file", text);
    EXPECT_EQ(Value(), expected) << text.substr(0, 40);
  }
}

TEST_F(GetConfiguredPathTest, AnswersQuietlyForWhatIsNoFile) {
  EXPECT_EQ(Value(), kNone);
  std::filesystem::create_directories(home.path() / "Library/Folder/file");
  EXPECT_EQ(Value(), kNone);
  std::filesystem::remove(home.path() / "Library/Folder/file");
  home.Write("Library/Folder/file", "k=v");
  EXPECT_EQ(Value(), "v");
  // The file can't be opened, not even by a user who may read every file.
  rlimit limit;
  getrlimit(RLIMIT_NOFILE, &limit);
  const rlimit nothing{0, limit.rlim_max};
  setrlimit(RLIMIT_NOFILE, &nothing);
  EXPECT_EQ(Value(), kNone);
  setrlimit(RLIMIT_NOFILE, &limit);
}

}  // namespace
