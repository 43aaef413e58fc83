#include "GlobalState.h"

#include <gtest/gtest.h>

#include "FakeHost.h"
#include "FakeTamberlink.h"
#include "TemporaryFolder.h"
#include "VirtualTime.h"

namespace {

class GlobalStateTest : public testing::Test {
 protected:
  GlobalStateTest() { state.picaBasicSuite = fake_host.basicSuite(); }
  ~GlobalStateTest() override { EXPECT_EQ(Handles(), 0); }

  // Counts the memory handles that weren't freed.
  static long Handles() {
    return std::count(fake_host.calls.begin(), fake_host.calls.end(), "AEGP_GetProjectPath") -
           std::count(fake_host.calls.begin(), fake_host.calls.end(), "AEGP_FreeMemHandle");
  }

  GlobalState state;
};

TEST_F(GlobalStateTest, SnapshotHoldsTheProjectItsFileAndTheClock) {
  TemporaryFolder folder;
  const auto file = folder.Write("ü.aep", "");
  fake_host.path = file.u16string();
  fake_host.dirty = true;
  state.updateGlobalState();
  EXPECT_EQ(state.currentProjectPath, file.string());
  EXPECT_TRUE(state.currentProjectDirty);
  EXPECT_GT(state.currentProjectModificationDate, 0);
  EXPECT_EQ(state.currentTime, virtual_time);
  EXPECT_EQ(state.lastProjectPath, "");

  std::filesystem::remove(file);
  state.updateGlobalState();
  EXPECT_EQ(state.currentProjectModificationDate, 0);
  EXPECT_EQ(state.currentProjectPath, file.string());

  state.currentProjectModificationDate = 1;
  fake_host.path.clear();
  fake_host.hasProject = false;
  state.updateGlobalState();
  EXPECT_EQ(state.currentProjectModificationDate, 0);
  EXPECT_FALSE(state.currentProjectDirty);
}

TEST_F(GlobalStateTest, StartReadsThePathAfreshAndRestartsTheCount) {
  fake_host.path = u"/a.aep";
  state.suppressModalWindows = true;
  state.startFontActivationProcess();
  EXPECT_EQ(state.activationProjectPath, "/a.aep");
  EXPECT_TRUE(state.fontActivationInProgress);
  EXPECT_FALSE(state.suppressModalWindows);
  state.updateGlobalState();
  state.updateGlobalState();
  EXPECT_EQ(state.ticksSinceActivationStart, 2);
  fake_host.path = u"/b.aep";
  state.startFontActivationProcess();
  EXPECT_EQ(state.activationProjectPath, "/b.aep");
  EXPECT_EQ(state.ticksSinceActivationStart, 0);
}

TEST_F(GlobalStateTest, EnabledIsAskedEachTimeAndKeepsTheLatestAnswer) {
  TBKLoader* loader = fake_tamberlink.Install();
  ASSERT_TRUE(loader);
  EXPECT_TRUE(state.isPluginEnabled());
  fake_tamberlink.enabled = false;
  EXPECT_FALSE(state.isPluginEnabled());
  fake_tamberlink.enabled.reset();
  EXPECT_FALSE(state.isPluginEnabled());
  EXPECT_EQ(fake_tamberlink.calls.size(), 3u);
  fake_tamberlink.enabled = true;
  EXPECT_TRUE(state.isPluginEnabled());
  loader->pfPluginIsEnabled = nullptr;
  EXPECT_FALSE(state.isPluginEnabled());
}

}  // namespace
