#include "AETypelark.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "AETypelark_Strings.h"
#include "FakeHost.h"
#include "FakeTamberlink.h"
#include "GlobalState.h"
#include "TemporaryFolder.h"
#include "VirtualTime.h"

namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr char kInitialize[] =
    "InitializeTamberlinkInterface 'com.veldrane.AutoActivationPlugin.AE160' '16'";
constexpr char kReport[] = "AEGP_ReportInfo(5,Error enabling After Effects Typelark.)";

A_Err Start(A_long major = 114, A_long minor = 0) {
  fake_tamberlink.Install();
  return EntryPointFunc(fake_host.basicSuite(), major, minor, 5, nullptr);
}

A_Err Tick() {
  ++virtual_time;
  A_long maxSleep = 0;
  return fake_host.idleHook(nullptr, nullptr, &maxSleep);
}

TEST(EntryPoint, TakesHostsFrom113Point5On) {
  struct {
    A_long major, minor;
    bool taken;
  } const cases[] = {{112, 9, false}, {113, 4, false}, {113, 5, true}, {113, 9, true},
                     {114, 0, true},  {115, 0, true},  {0, 0, false}};
  for (const auto& [major, minor, taken] : cases) {
    SCOPED_TRACE(testing::Message() << major << "." << minor);
    global_state.picaBasicSuite = nullptr;
    fake_host.calls.clear();
    EXPECT_EQ(Start(major, minor), 0);
    EXPECT_EQ(global_state.hostMajorVersion, major);
    EXPECT_EQ(global_state.hostMinorVersion, minor);
    EXPECT_EQ(global_state.picaBasicSuite != nullptr, taken);
    EXPECT_EQ(fake_host.calls.empty(), !taken);
  }
}

TEST(EntryPoint, StartsInOrderAndHoldsNoSuite) {
  EXPECT_EQ(Start(), 0);
  EXPECT_THAT(
      fake_host.calls,
      ElementsAre("+AEGP Register Suite 6", "AEGP_RegisterIdleHook(5)", "AEGP_RegisterDeathHook(5)",
                  "AEGP_RegisterUpdateMenuHook(5)", "+AEGP Command Suite 1",
                  "AEGP_GetUniqueCommand", "AEGP_InsertMenuCommand(900,Veldrane...,7,-2)",
                  "AEGP_RegisterCommandHook(5,1,0)", "-AEGP Register Suite 6",
                  "-AEGP Command Suite 1"));
  EXPECT_THAT(fake_tamberlink.calls, ElementsAre(kInitialize));
  EXPECT_TRUE(global_state.suppressModalWindows);
  initializeTamberlink();
  EXPECT_THAT(fake_tamberlink.calls, ElementsAre(kInitialize));
}

TEST(EntryPoint, StopsAtTheFirstFailureAndReportsItOnce) {
  const char* const steps[] = {"AEGP_RegisterIdleHook",       "AEGP_RegisterDeathHook",
                               "AEGP_RegisterUpdateMenuHook", "AEGP_GetUniqueCommand",
                               "AEGP_InsertMenuCommand",      "AEGP_RegisterCommandHook"};
  size_t tried = 0;
  for (const char* failing : steps) {
    SCOPED_TRACE(failing);
    fake_host.failures = {{failing, 77}, {"AEGP_ReportInfo", 78}};
    EXPECT_EQ(Start(), 77);
    const auto calls = fake_host.TakeCalls();
    ASSERT_EQ(calls.size(), ++tried + 1);
    EXPECT_THAT(calls[tried - 1], StartsWith(failing));
    EXPECT_EQ(calls.back(), kReport);
    EXPECT_FALSE(global_state.suppressModalWindows);
    EXPECT_THAT(fake_tamberlink.calls, IsEmpty());
  }
}

TEST(EntryPoint, ReturnsTheErrorOfAMissingSuite) {
  for (const char* suite : {"AEGP Register Suite", "AEGP Command Suite"}) {
    fake_host.refusedSuites = {{suite, suite[5] == 'R' ? 6 : 1}};
    EXPECT_EQ(Start(), 516) << suite;
  }
  fake_host.refusedSuites.clear();
  EXPECT_EQ(EntryPointFunc(nullptr, 114, 0, 5, nullptr), 516);
}

TEST(EntryPoint, ReturnsTheFirstErrorAlsoWhenItCannotBeReported) {
  fake_host.failures = {{"AEGP_RegisterIdleHook", 77}};
  fake_host.refusedSuites = {{"AEGP Utility Suite", 7}};
  EXPECT_EQ(Start(), 77);
}

TEST(EntryPoint, IsInertWithoutTheFramework) {
  const TemporaryFolder home;
  setenv("HOME", home.path().c_str(), 1);
  EXPECT_EQ(EntryPointFunc(fake_host.basicSuite(), 114, 0, 5, nullptr), 0);
  EXPECT_THAT(fake_host.calls, IsEmpty());
  EXPECT_FALSE(global_state.suppressModalWindows);
}

TEST(EntryPoint, TakesNullAsNothingToDo) {
  EXPECT_EQ(bootstrap(nullptr, &global_state), 0);
  EXPECT_EQ(registerForAEEventNotifications(nullptr, 5), 0);
  EXPECT_EQ(addMenuItems(nullptr, nullptr, 5), 0);
}

TEST(IdleHook, MovesTheSnapshotForward) {
  ASSERT_EQ(Start(), 0);
  fake_host.path = u"/nowhere/a.aep";
  fake_host.dirty = true;
  EXPECT_EQ(Tick(), 0);
  EXPECT_EQ(global_state.lastProjectPath, "/nowhere/a.aep");
  EXPECT_TRUE(global_state.lastProjectDirty);
}

TEST(IdleHook, StaysQuietAndMovesForwardWhenASuiteIsMissing) {
  ASSERT_EQ(Start(), 0);
  fake_host.refusedSuites = {{"AEGP Proj Suite", 9}};
  global_state.currentProjectPath = "/new.aep";
  EXPECT_EQ(Tick(), 0);
  EXPECT_EQ(global_state.lastProjectPath, "/new.aep");
  fake_host.refusedSuites = {{"AEGP Memory Suite", 1}};
  fake_host.calls.clear();
  EXPECT_EQ(Tick(), 0);
  EXPECT_THAT(fake_host.calls, Not(Contains("AEGP_GetProjectPath")));
}

TEST(IdleHook, ReturnsTheErrorOfTheReopening) {
  ASSERT_EQ(Start(), 0);
  fake_host.path = u"/nowhere/a.aep";
  fake_tamberlink.open.front().count = 1;
  fake_host.failures["AEGP_OpenProjectFromPath"] = 42;
  global_state.startFontActivationProcess();
  for (int tick = 1; tick <= 25; ++tick) EXPECT_EQ(Tick(), tick == 10 ? 42 : 0) << tick;
}

TEST(IdleHook, MovesForwardDuringAProcessSoThatNoSaveFollowsIt) {
  ASSERT_EQ(Start(), 0);
  fake_host.path = u"/nowhere/a.aep";
  global_state.startFontActivationProcess();
  fake_host.dirty = true;
  Tick();
  fake_host.dirty = false;
  for (int tick = 2; tick <= 25; ++tick) Tick();
  fake_tamberlink.calls.clear();
  Tick();
  EXPECT_THAT(fake_tamberlink.calls, Each(Not(StartsWith("Handle"))));
}

class MenuCommand : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(Start(), 0);
    fake_host.path = u"/nowhere/a.aep";
    Tick();
    global_state.endFontActivationProcess();
    fake_tamberlink.calls.clear();
  }

  A_Boolean Pick(AEGP_Command command) {
    A_Boolean handled = 0;
    EXPECT_EQ(fake_host.commandHook(nullptr, nullptr, command, 1, 0, &handled), 0);
    return handled;
  }
};

TEST_F(MenuCommand, LeavesOtherCommandsAlone) {
  EXPECT_EQ(Pick(0), 0);
  EXPECT_EQ(Pick(901), 0);
  EXPECT_THAT(fake_tamberlink.calls, IsEmpty());
}

TEST_F(MenuCommand, ShowsTheDialogOfTheLastTicksDocument) {
  fake_host.path = u"/nowhere/not-yet-seen.aep";
  EXPECT_EQ(Pick(900), 1);
  EXPECT_THAT(fake_tamberlink.calls,
              ElementsAre("GetIDForDocument '/nowhere/a.aep' 256", "InvokeCommandDialog 255"));
  EXPECT_FALSE(global_state.fontActivationInProgress);
}

TEST_F(MenuCommand, StartsAProcessOnRequest) {
  fake_tamberlink.startRequested = true;
  EXPECT_EQ(Pick(900), 1);
  EXPECT_TRUE(global_state.fontActivationInProgress);
  EXPECT_EQ(global_state.activationProjectPath, "/nowhere/a.aep");
}

TEST_F(MenuCommand, IsHandledAlsoWhenASuiteIsMissing) {
  fake_tamberlink.startRequested = true;
  fake_host.refusedSuites = {{"AEGP Proj Suite", 9}};
  EXPECT_EQ(Pick(900), 1);
  EXPECT_FALSE(global_state.fontActivationInProgress);
}

TEST(UpdateMenuHook, EnablesTheCommandAndPassesTheErrorOn) {
  ASSERT_EQ(Start(), 0);
  fake_host.TakeCalls();
  EXPECT_EQ(fake_host.updateMenuHook(nullptr, nullptr, 0), 0);
  EXPECT_THAT(fake_host.TakeCalls(), ElementsAre("AEGP_EnableCommand(900)"));
  fake_host.failures["AEGP_EnableCommand"] = 9;
  EXPECT_EQ(fake_host.updateMenuHook(nullptr, nullptr, 0), 9);
  fake_host.refusedSuites = {{"AEGP Command Suite", 1}};
  EXPECT_EQ(fake_host.updateMenuHook(nullptr, nullptr, 0), 0);
}

TEST(DeathHook, ReportsTheCloseEvenOfNoDocument) {
  ASSERT_EQ(Start(), 0);
  fake_tamberlink.calls.clear();
  EXPECT_EQ(fake_host.deathHook(nullptr, nullptr), 0);
  EXPECT_THAT(fake_tamberlink.calls,
              ElementsAre("HandleCloseDocument '' ''", "TerminateTamberlinkInterface"));
}

TEST(Hooks, GoWithoutOperationsThatTheFrameworkLacks) {
  ASSERT_EQ(Start(), 0);
  TBKLoader::ResetFunctionPointers(TBKLoader::GetSharedInstance(), nullptr);
  fake_host.path = u"/nowhere/a.aep";
  for (int tick = 0; tick < 30; ++tick) EXPECT_EQ(Tick(), 0);
  A_Boolean handled = 0;
  fake_host.commandHook(nullptr, nullptr, 900, 1, 0, &handled);
  EXPECT_EQ(handled, 1);
  EXPECT_EQ(fake_host.deathHook(nullptr, nullptr), 0);
}

}  // namespace
