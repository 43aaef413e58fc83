#include "BackgroundForegroundSwitcher.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "AfterEachTest.h"
#include "BackgroundForegroundSwitcherPlatform.h"
#include "CocoaFakes.h"
#include "FakeWorkspace.h"
#include "GScopedManagedMemory.h"
#include "TraceLog.h"

namespace {

const bool kResets = AfterEachTest([] { fakeWorkspace = {}; });

constexpr int kDock = 2;
constexpr int kOther = 3;
// All windows, ignoring other applications.
constexpr unsigned long kOptions = 3;

TEST(BackgroundForegroundSwitcher, GoesToTheDockAndBackWhenTheHostIsInFront) {
  struct {
    int front;
    bool dockRuns;
    std::vector<std::pair<int, unsigned long>> activated;
  } const cases[] = {{getpid(), true, {{kDock, kOptions}, {getpid(), kOptions}}},
                     {kOther, true, {}},
                     {getpid(), false, {}},
                     {0, true, {}}};
  char name[] = "any name";
  for (const auto& row : cases) {
    for (char* given : {name, static_cast<char*>(nullptr)}) {
      SCOPED_TRACE(testing::Message()
                   << row.front << (row.dockRuns ? ", with" : ", without") << " the Dock");
      fakeWorkspace.applications = {{getpid(), "host", {}}, {kOther, "other", {}}};
      if (row.dockRuns) fakeWorkspace.applications.push_back({kDock, "com.apple.dock", {}});
      fakeWorkspace.front = row.front;
      fakeWorkspace.activated.clear();
      BackgroundForegroundSwitcher().backgroundForegroundApp(given);
      EXPECT_EQ(fakeWorkspace.activated, row.activated);
    }
  }
}

TEST(BackgroundForegroundSwitcherPlatform, WritesAnIdOnlyWhereThereIsOne) {
  int pid = 17;
  EXPECT_EQ(GetFrontProcessID(pid), -1);
  EXPECT_EQ(GetProcessID("com.apple.dock", pid), -600);
  EXPECT_EQ(pid, 17);
  TraceLog traces;
  SetFrontApplication(17);
  EXPECT_EQ(traces.lines,
            std::vector<std::string>{"The platform refused to bring process 17 to the front"});
  EXPECT_TRUE(fakeWorkspace.activated.empty());

  fakeWorkspace.applications = {
      {kOther, "other", {}}, {kDock, "com.apple.dock", {}}, {4, "com.apple.dock", {}}};
  fakeWorkspace.front = kOther;
  const GScopedManagedMemory scope;
  EXPECT_EQ(GetFrontProcessID(pid), 0);
  EXPECT_EQ(pid, kOther);
  EXPECT_EQ(GetProcessID("com.apple.dock", pid), 0);
  EXPECT_EQ(pid, kDock);
  EXPECT_EQ(AutoreleasedObjects(), 0u);
}

}  // namespace
