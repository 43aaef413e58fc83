#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FakeHost.h"
#include "TemporaryFolder.h"

namespace {

using testing::Contains;
using testing::IsEmpty;

using EntryPoint = A_Err (*)(SPBasicSuite*, A_long, A_long, AEGP_PluginID, AEGP_GlobalRefcon*);

// Loads the plug-in as the host does, in a folder without a framework.
class ModuleTest : public testing::Test {
 protected:
  void SetUp() override {
    std::filesystem::current_path(folder.path());
    setenv("HOME", folder.path().c_str(), 1);
    void* module = dlopen(AE_TYPELARK, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(module, nullptr) << dlerror();
    entry = reinterpret_cast<EntryPoint>(dlsym(module, "EntryPointFunc"));
    ASSERT_NE(entry, nullptr);
  }

  TemporaryFolder folder;
  EntryPoint entry = nullptr;
};

TEST_F(ModuleTest, StaysInertWithoutAFramework) {
  EXPECT_EQ(entry(fake_host.basicSuite(), 114, 0, 5, nullptr), 0);
  EXPECT_THAT(fake_host.calls, IsEmpty());
}

TEST_F(ModuleTest, LeavesProjectsAloneWithAFrameworkThatCannotBeLoaded) {
  std::filesystem::create_directory("Tamberlink.framework");
  EXPECT_EQ(entry(fake_host.basicSuite(), 114, 0, 5, nullptr), 0);
  fake_host.path = folder.Write("a.aep", "").u16string();
  fake_host.calls.clear();
  A_long maxSleep = 0;
  EXPECT_EQ(fake_host.idleHook(nullptr, nullptr, &maxSleep), 0);
  // For the snapshot. An opened project would be asked for its path again.
  EXPECT_THAT(fake_host.TakeCalls(), Contains("AEGP_GetProjectPath").Times(1));
}

TEST_F(ModuleTest, ReturnsTheErrorOfAMissingSuite) {
  EXPECT_EQ(entry(nullptr, 114, 0, 5, nullptr), 516);
}

TEST_F(ModuleTest, StartsAndTicksWithTheFrameworkThatTheLaunchInfoFileLeadsTo) {
  folder.Write("Library/Veldrane/com.veldrane.Oxbrim-LaunchInfo.conf",
               "oxbrim.path=" + (folder.path() / "Core/Oxbrim").string() + "\n");
  std::filesystem::create_directories(folder.path() / "Core/PluginFiles");
  std::filesystem::create_directory_symlink(
      TAMBERLINK_FRAMEWORK, folder.path() / "Core/PluginFiles/Tamberlink.framework");
  EXPECT_EQ(entry(fake_host.basicSuite(), 114, 0, 5, nullptr), 0);
  EXPECT_THAT(fake_host.TakeCalls(), Contains("AEGP_RegisterIdleHook(5)"));
  fake_host.path = folder.Write("a.aep", "").u16string();
  A_long maxSleep = 0;
  EXPECT_EQ(fake_host.idleHook(nullptr, nullptr, &maxSleep), 0);
  EXPECT_THAT(fake_host.TakeCalls(), Contains("AEGP_GetProjectPath"));
  EXPECT_EQ(fake_host.deathHook(nullptr, nullptr), 0);
}

}  // namespace
