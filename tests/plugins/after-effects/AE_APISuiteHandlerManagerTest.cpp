#include "AE_APISuiteHandlerManager.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FakeHost.h"

namespace {

using testing::ElementsAre;

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

TEST_F(ManagerTest, NeedsNoSuiteButTheCallsOwn) {
  fake_host.refusedSuites = {{"AEGP Memory Suite", 1}};
  EXPECT_NE(manager.getProjectPathMemHandle(manager.getProjectByIndex(0)), nullptr);
}

TEST_F(ManagerTest, PurgeIsTheHostsCommand) {
  EXPECT_EQ(manager.purgeImageCache(), 0);
  EXPECT_THAT(fake_host.TakeCalls(), ElementsAre("AEGP_DoCommand(2372)"));
}

}  // namespace
