#import <AppKit/AppKit.h>
#include <gmock/gmock.h>
#include <unistd.h>

#include "BackgroundForegroundSwitcher.h"
#include "BackgroundForegroundSwitcherPlatform.h"
#include "CoreErrorCodes.h"
#include "GetPathToRunningProcess.h"
#include "TraceLog.h"

// The plug-in's questions to the system about applications, on a desktop whose Dock runs.

namespace {

using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::EndsWith;
using testing::StartsWith;

constexpr char kDockFolder[] = "/System/Library/CoreServices/Dock.app/Contents/MacOS/";

TEST(Workspace, ListsTheExecutablesOfRunningApplications) {
  const std::vector<std::string> executables = GetRunningExecutables();
  EXPECT_THAT(executables, Each(StartsWith("/")));
  EXPECT_THAT(executables, Contains(std::string(kDockFolder) + "Dock"));
}

TEST(Workspace, FindsTheFolderOfARunningApplicationByItsExactName) {
  std::string folder = "untouched";
  EXPECT_EQ(GetPathToRunningProcessExe("dock", folder), CoreErrorCodes::kUnknownError);
  EXPECT_EQ(folder, "untouched");
  EXPECT_EQ(GetPathToRunningProcessExe("Dock", folder), CoreErrorCodes::kSuccess);
  EXPECT_EQ(folder, kDockFolder);
}

TEST(Workspace, NamesTheLibraryOfTheUser) {
  std::string directory;
  GetUsersAppDataDirectory(directory);
  EXPECT_THAT(directory, AllOf(StartsWith("/"), EndsWith("/Library")));
}

TEST(Workspace, TellsTheProcessOfAnApplication) {
  int pid = 17;
  EXPECT_EQ(GetProcessID("com.veldrane.no-such-application", pid), -600);
  EXPECT_EQ(pid, 17);
  EXPECT_EQ(GetProcessID("com.apple.dock", pid), 0);
  EXPECT_GT(pid, 17);
}

// A program without windows isn't in front, so nothing is activated.
TEST(Workspace, TheSwitchLeavesAnotherApplicationInFront) {
  int before = 0, after = 0;
  ASSERT_EQ(GetFrontProcessID(before), 0);
  BackgroundForegroundSwitcher().backgroundForegroundApp(nullptr);
  GetFrontProcessID(after);
  EXPECT_EQ(before, after);
  EXPECT_NE(before, getpid());
}

TEST(Workspace, ActivatesNothingWithoutSuchAProcess) {
  TraceLog traces;
  SetFrontApplication(0);
  SetFrontApplication(-1);
  EXPECT_THAT(traces.lines, ElementsAre("The platform refused to bring process 0 to the front",
                                        "The platform refused to bring process -1 to the front"));
}

}  // namespace
