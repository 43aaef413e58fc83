#include "BackgroundForegroundSwitcher.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "desktop/Workspace.h"

namespace {

constexpr int kDock = 2;
constexpr int kOther = 3;

TEST(BackgroundForegroundSwitcher, GoesToTheDockAndBackWhenTheHostIsInFront) {
  struct {
    int front;
    bool dockRuns;
    std::vector<int> activated;
  } const cases[] = {{getpid(), true, {kDock, getpid()}},
                     {kOther, true, {}},
                     {getpid(), false, {}},
                     {0, true, {}}};
  auto& workspace = desktop::Workspace::sharedWorkspace();
  workspace.addRunningApplication({getpid(), "host"});
  workspace.addRunningApplication({kOther, "other"});
  for (const auto& row : cases) {
    SCOPED_TRACE(testing::Message() << row.front << row.dockRuns);
    workspace.removeRunningApplication(kDock);
    if (row.dockRuns) workspace.addRunningApplication({kDock, "com.apple.dock"});
    if (row.front == 0) workspace.removeRunningApplication(getpid());
    workspace.activate(row.front, 0);
    std::vector<int> activated;
    workspace.setActivationObserver([&](const desktop::RunningApplication& application) {
      activated.push_back(application.processIdentifier);
    });
    BackgroundForegroundSwitcher().backgroundForegroundApp(nullptr);
    workspace.setActivationObserver({});
    EXPECT_EQ(activated, row.activated);
  }
}

}  // namespace
