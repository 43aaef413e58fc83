#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CocoaFakes.h"
#include "CoreErrorCodes.h"
#include "FakeWorkspace.h"
#include "GetPathToRunningProcess.h"
#include "TBKLoader.h"
#include "TemporaryFolder.h"

namespace {

namespace fs = std::filesystem;

TEST(RunningProcess, IsTheFirstWithThatExactExecutable) {
  std::string folder = "untouched";
  EXPECT_EQ(GetPathToRunningProcessExe("Oxbrim", folder), CoreErrorCodes::kUnknownError);
  fakeWorkspace.applications = {{1, "none", {}}, {2, "none", {}}};
  EXPECT_EQ(GetPathToRunningProcessExe("Oxbrim", folder), CoreErrorCodes::kUnknownError);
  fakeWorkspace.applications.push_back({3, "lower", "/Apps/oxbrim"});
  EXPECT_EQ(GetPathToRunningProcessExe("Oxbrim", folder), CoreErrorCodes::kUnknownError);
  EXPECT_EQ(folder, "untouched");
  fakeWorkspace.applications.push_back({5, "first", "/First Äpps/Oxbrim"});
  fakeWorkspace.applications.push_back({4, "second", "/Second/Oxbrim"});
  EXPECT_EQ(GetPathToRunningProcessExe("Oxbrim", folder), CoreErrorCodes::kSuccess);
  EXPECT_EQ(folder, "/First Äpps/");
  EXPECT_EQ(cocoaFakes.openPools, 0);
}

TEST(RunningProcess, LeadsToTheFrameworkBesideIt) {
  TemporaryFolder folder;
  setenv("HOME", folder.path().c_str(), 1);
  folder.Write("Library/Veldrane/com.veldrane.Oxbrim-LaunchInfo.conf", "oxbrim.path=/no/Oxbrim\n");
  fs::create_directories(folder.path() / "Core/PluginFiles");
  fs::create_directory_symlink(TAMBERLINK_FRAMEWORK,
                               folder.path() / "Core/PluginFiles/Tamberlink.framework");
  fakeWorkspace.applications = {{7, "core", folder.path() / "Core/Oxbrim"}};
  ASSERT_NE(TBKLoader::GetSharedInstance(), nullptr);
  EXPECT_EQ(TBKLoader::GetSharedInstance()->frameworkPath,
            (folder.path() / "Core/PluginFiles/Tamberlink.framework").string());
}

TEST(GetConfiguredPath, FailsWhereThePlatformNamesNoLibrary) {
  TemporaryFolder home;
  setenv("HOME", home.path().c_str(), 1);
  home.Write("Library/Folder/file", "k=v");
  cocoaFakes.failing = {"NSSearchPathForDirectoriesInDomains"};
  std::string value = "untouched";
  EXPECT_EQ(GetConfiguredPath("Folder", "file", "k", value), CoreErrorCodes::kUnknownError);
  EXPECT_EQ(value, "untouched");
  EXPECT_EQ(cocoaFakes.openPools, 0);
}

}  // namespace
