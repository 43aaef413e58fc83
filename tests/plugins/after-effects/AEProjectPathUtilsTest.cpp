#include "AEProjectPathUtils.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "AE_APISuiteHandlerManager.h"
#include "FakeHost.h"

namespace {

using testing::ElementsAre;

class PathUtilsTest : public testing::Test {
 protected:
  std::string Path() { return utils.getAfterEffectsProjectPathUTF8(&manager); }

  AE_APISuiteHandlerManager manager{fake_host.basicSuite()};
  AEProjectPathUtils utils;
};

TEST_F(PathUtilsTest, PathsComeOutAsUTF8) {
  struct {
    std::u16string host;
    std::string path;
  } const cases[] = {{u"", ""},
                     {u"/~\x7F\x80ÿ", "/~\x7F\u0080ÿ"},
                     {u"/フォント/𝄞.aep", "/フォント/𝄞.aep"},
                     {std::u16string{u'/', 0xD800, u'a'}, ""},
                     {std::u16string{u'/', 0xDC00}, ""},
                     {std::u16string{u'/', 0xD834}, ""}};
  for (const auto& row : cases) {
    SCOPED_TRACE(testing::PrintToString(row.host));
    fake_host.path = row.host;
    EXPECT_EQ(Path(), row.path);
  }
}

TEST_F(PathUtilsTest, AHandleThatCantBeLockedIsGivenBack) {
  fake_host.path = u"/a.aep";
  fake_host.failures = {{"AEGP_LockMemHandle", 1}};
  EXPECT_EQ(Path(), "");
  EXPECT_THAT(fake_host.TakeCalls(),
              ElementsAre("AEGP_GetProjectByIndex(0)", "AEGP_GetProjectPath", "AEGP_LockMemHandle",
                          "AEGP_UnlockMemHandle", "AEGP_FreeMemHandle"));
}

TEST_F(PathUtilsTest, OpenGivesTheHostUTF16UpToTheFirstInvalidByte) {
  struct {
    std::string path;
    std::u16string host;
  } const cases[] = {{"/𝄞.aep", u"/𝄞.aep"},
                     {"/a\xFF/b", u"/a"},
                     {"\xFFx", u""},
                     {"", u""},
                     {"/\xED\xA0\x80", u"/"}};
  for (const auto& row : cases) {
    SCOPED_TRACE(row.path);
    EXPECT_EQ(utils.openProject(&manager, row.path), 0u);
    EXPECT_EQ(fake_host.openedPath, row.host);
  }
  fake_host.failures = {{"AEGP_OpenProjectFromPath", -8}};
  EXPECT_EQ(utils.openProject(&manager, "/a"), static_cast<uint32_t>(-8));
}

}  // namespace
