#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "AEProjectPathUtils.h"
#include "AE_APISuiteHandlerManager.h"
#include "FakeHost.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(SuiteHandler, AcquiresOnFirstUseAndReleasesInTheOrderOfTheList) {
  {
    AEGP_SuiteHandler handler(fake_host.basicSuite());
    EXPECT_THAT(fake_host.calls, IsEmpty());
    handler.PersistentDataSuite3();
    handler.PersistentDataSuite4();
    handler.UtilitySuite6();
    EXPECT_EQ(handler.UtilitySuite3(), handler.UtilitySuite3());
    fake_host.calls.emplace_back("end");
  }
  EXPECT_THAT(fake_host.calls,
              ElementsAre("+AEGP Persistent Data Suite 3", "+AEGP Persistent Data Suite 4",
                          "+AEGP Utility Suite 13", "+AEGP Utility Suite 7", "end",
                          "-AEGP Utility Suite 7", "-AEGP Persistent Data Suite 4",
                          "-AEGP Persistent Data Suite 3", "-AEGP Utility Suite 13"));
}

TEST(SuiteHandler, ThrowsForWhatTheHostLacksAndTriesAgain) {
  EXPECT_THROW(AEGP_SuiteHandler(nullptr), int);
  AEGP_SuiteHandler handler(fake_host.basicSuite());
  fake_host.refusedSuites = {{"AEGP Proj Suite", 9}};
  EXPECT_THROW(handler.ProjSuite6(), int);
  fake_host.refusedSuites.clear();
  EXPECT_NE(handler.ProjSuite6(), nullptr);
}

class ManagerTest : public testing::Test {
 protected:
  AE_APISuiteHandlerManager manager{fake_host.basicSuite()};
};

TEST_F(ManagerTest, DiskCacheSettingIsTextWithADefault) {
  EXPECT_EQ(manager.getDiskCacheEnabledSetting(), "1");
  EXPECT_EQ(manager.disableDiskCache(), 0);
  EXPECT_EQ(manager.getDiskCacheEnabledSetting(), "0");
  EXPECT_EQ(manager.enableDiskCache(), 0);
  EXPECT_EQ(fake_host.preferences["Disk Cache Controls/Enabled 2"], "1");
  fake_host.preferences["Disk Cache Controls/Enabled 2"] = std::string(300, '1');
  EXPECT_EQ(manager.getDiskCacheEnabledSetting(), std::string(255, '1'));
  fake_host.failures = {{"AEGP_GetString", 1}};
  EXPECT_EQ(manager.getDiskCacheEnabledSetting(), "");
  fake_host.failures = {{"AEGP_SetString", 2}};
  EXPECT_EQ(manager.enableDiskCache(), 2);
  fake_host.failures = {{"AEGP_GetApplicationBlob", 3}, {"AEGP_SetString", 2}};
  EXPECT_EQ(manager.enableDiskCache(), 3);
}

TEST_F(ManagerTest, FontUpdateIsFollowedByARefreshWhoseCodeCounts) {
  fake_host.failures = {{"AEGP_UpdateFontList", 4}};
  EXPECT_EQ(manager.updateFontList(), 0);
  EXPECT_THAT(fake_host.TakeCalls(), ElementsAre("AEGP_UpdateFontList", "PF_RefreshAllWindows"));
  fake_host.failures = {{"PF_RefreshAllWindows", 5}};
  EXPECT_EQ(manager.updateFontList(), 5);
  EXPECT_EQ(manager.refreshAllWindows(), 5);
}

TEST_F(ManagerTest, PurgeIsTheHostsCommand) {
  EXPECT_EQ(manager.purgeImageCache(), 0);
  EXPECT_THAT(fake_host.TakeCalls(), ElementsAre("AEGP_DoCommand(2372)"));
}

class PathUtilsTest : public ManagerTest {
 protected:
  std::string Path() { return utils.getAfterEffectsProjectPathUTF8(&manager); }

  AEProjectPathUtils utils;
};

TEST_F(PathUtilsTest, PathsComeOutAsUTF8) {
  struct {
    std::u16string host;
    std::string path;
  } const cases[] = {{u"", ""},
                     {u"/フォント/𝄞.aep", "/フォント/𝄞.aep"},
                     {std::u16string{u'/', 0xD800, u'a'}, ""},
                     {std::u16string{u'/', 0xDC00}, ""},
                     {std::u16string{u'/', 0xD834}, ""}};
  for (const auto& row : cases) {
    fake_host.path = row.host;
    EXPECT_EQ(Path(), row.path);
    EXPECT_THAT(fake_host.TakeCalls(),
                ElementsAre("AEGP_GetProjectByIndex(0)", "AEGP_GetProjectPath",
                            "AEGP_LockMemHandle", "AEGP_UnlockMemHandle", "AEGP_FreeMemHandle"));
  }
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
    EXPECT_EQ(utils.openProject(&manager, row.path), 0u);
    EXPECT_EQ(fake_host.openedPath, row.host);
  }
  fake_host.failures = {{"AEGP_OpenProjectFromPath", -8}};
  EXPECT_EQ(utils.openProject(&manager, "/a"), static_cast<uint32_t>(-8));
}

}  // namespace
