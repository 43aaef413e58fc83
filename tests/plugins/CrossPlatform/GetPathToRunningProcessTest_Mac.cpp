#include "GetPathToRunningProcess.h"

#include <gtest/gtest.h>

#include "CoreErrorCodes.h"
#include "FakeWorkspace.h"
#include "FreshCocoaFakes.h"
#include "GScopedManagedMemory.h"
#include "TemporaryFolder.h"
#include "TraceLog.h"

namespace {

TEST(RunningProcess, IsTheFirstWithThatExactExecutable) {
  const GScopedManagedMemory scope;
  std::string folder = "untouched";
  EXPECT_EQ(GetPathToRunningProcessExe("Oxbrim", folder), CoreErrorCodes::kUnknownError);
  fakeWorkspace.applications = {{1, "none", {}}, {2, "none", {}}};
  EXPECT_EQ(GetPathToRunningProcessExe("Oxbrim", folder), CoreErrorCodes::kUnknownError);
  fakeWorkspace.applications.push_back({3, "lower", "/Apps/oxbrim"});
  fakeWorkspace.applications.push_back({6, "longer", "/Oxbrim/Oxbrim2"});
  EXPECT_EQ(GetPathToRunningProcessExe("Oxbrim", folder), CoreErrorCodes::kUnknownError);
  EXPECT_EQ(folder, "untouched");
  fakeWorkspace.applications.push_back({5, "first", "/First Äpps/Oxbrim"});
  fakeWorkspace.applications.push_back({4, "second", "/Second/Oxbrim"});
  EXPECT_EQ(GetPathToRunningProcessExe("Oxbrim", folder), CoreErrorCodes::kSuccess);
  EXPECT_EQ(folder, "/First Äpps/");
  EXPECT_EQ(AutoreleasedObjects(), 0u);
}

TEST(GetConfiguredPath, FailsWhereThePlatformNamesNoLibrary) {
  TemporaryFolder home;
  setenv("HOME", home.path().c_str(), 1);
  home.Write("Library/Folder/file", "k=v");
  cocoaFakes.failing = {"NSSearchPathForDirectoriesInDomains"};
  const GScopedManagedMemory scope;
  TraceLog traces;
  std::string value = "untouched";
  EXPECT_EQ(GetConfiguredPath("Folder", "file", "k", value), CoreErrorCodes::kUnknownError);
  EXPECT_EQ(value, "untouched");
  // It doesn't look for the file at the root.
  EXPECT_TRUE(traces.lines.empty());
  EXPECT_EQ(AutoreleasedObjects(), 0u);
}

}  // namespace
