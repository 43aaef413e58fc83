#include "AETypelark.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FakeHost.h"
#include "FakeTamberlink.h"
#include "GlobalState.h"
#include "TraceLog.h"
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

A_Err Start() {
  fake_tamberlink.Install();
  return EntryPointFunc(fake_host.basicSuite(), 114, 3, 5, nullptr);
}

A_Err Tick() {
  ++virtual_time;
  A_long maxSleep = 0;
  return fake_host.idleHook(nullptr, nullptr, &maxSleep);
}

TEST(EntryPoint, InitializesTheFrameworkOnce) {
  EXPECT_EQ(Start(), 0);
  EXPECT_THAT(fake_tamberlink.calls, ElementsAre(kInitialize));
  EXPECT_TRUE(global_state.suppressModalWindows);
  EXPECT_EQ(global_state.hostMajorVersion, 114);
  EXPECT_EQ(global_state.hostMinorVersion, 3);
  initializeTamberlink();
  EXPECT_THAT(fake_tamberlink.calls, ElementsAre(kInitialize));
}

TEST(EntryPoint, RemembersARefusedHostAndNothingElseOfIt) {
  const std::pair<int32_t, int32_t> versions[] = {{112, 9}, {113, 0}, {113, 4}};
  for (const auto& [major, minor] : versions) {
    EXPECT_EQ(EntryPointFunc(fake_host.basicSuite(), major, minor, 5, nullptr), 0);
    EXPECT_EQ(global_state.hostMajorVersion, major);
    EXPECT_EQ(global_state.hostMinorVersion, minor);
    EXPECT_EQ(global_state.picaBasicSuite, nullptr);
    EXPECT_EQ(global_state.pluginId, 0);
  }
}

TEST(EntryPoint, EndsAtTheFirstRegistrationThatFailsAndReportsIt) {
  const std::vector<std::string> registrations = {
      "AEGP_RegisterIdleHook", "AEGP_RegisterDeathHook", "AEGP_RegisterUpdateMenuHook",
      "AEGP_GetUniqueCommand", "AEGP_InsertMenuCommand", "AEGP_RegisterCommandHook"};
  std::vector<std::string> expected;
  for (const std::string& failing : registrations) {
    SCOPED_TRACE(failing);
    fake_host.failures = {{failing, 77}, {"AEGP_ReportInfo", 78}};
    EXPECT_EQ(Start(), 77);
    std::vector<std::string> called;
    for (const std::string& call : fake_host.TakeCalls()) {
      called.push_back(call.substr(0, call.find('(')));
    }
    EXPECT_EQ(called.back(), "AEGP_ReportInfo");
    called.pop_back();
    expected.push_back(failing);
    EXPECT_EQ(called, expected);
  }
}

TEST(EntryPoint, ReturnsTheFirstErrorAlsoWhenItCannotBeReported) {
  fake_host.failures = {{"AEGP_RegisterIdleHook", 77}};
  fake_host.refusedSuites = {{"AEGP Utility Suite", 7}};
  EXPECT_EQ(Start(), 77);
}

TEST(IdleHook, MovesForwardDuringAProcessSoThatNoSaveFollowsIt) {
  ASSERT_EQ(Start(), 0);
  fake_host.path = u"/nowhere/a.aep";
  fake_host.dirty = true;
  Tick();
  EXPECT_TRUE(global_state.lastProjectDirty);
  global_state.startFontActivationProcess();
  fake_host.dirty = false;
  for (int tick = 1; tick <= 25; ++tick) Tick();
  fake_tamberlink.calls.clear();
  Tick();
  EXPECT_THAT(fake_tamberlink.calls, Each(Not(StartsWith("Handle"))));
}

TEST(IdleHook, TracesOnlyWhatIsNewToATick) {
  ASSERT_EQ(Start(), 0);
  TraceLog traces;
  const auto linesOfTicks = [&](int count) {
    traces.lines.clear();
    for (int tick = 0; tick < count; ++tick) Tick();
    return traces.lines;
  };
  fake_host.path = u"/nowhere/a.aep";
  fake_host.dirty = true;
  EXPECT_THAT(linesOfTicks(1),
              Contains(StartsWith("Project '/nowhere/a.aep', unsaved changes, modified at 0")));
  EXPECT_THAT(linesOfTicks(60), IsEmpty());
  fake_host.dirty = false;
  EXPECT_THAT(linesOfTicks(60),
              Contains(StartsWith("Project '/nowhere/a.aep', no unsaved changes")).Times(1));
  fake_tamberlink.enabled = false;
  linesOfTicks(20);
  EXPECT_THAT(linesOfTicks(60), IsEmpty());
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

TEST_F(MenuCommand, ShowsTheDialogOfTheLastTicksDocument) {
  fake_host.path = u"/nowhere/not-yet-seen.aep";
  EXPECT_EQ(Pick(900), 1);
  EXPECT_THAT(fake_tamberlink.calls,
              ElementsAre("GetIDForDocument '/nowhere/a.aep' 256", "InvokeCommandDialog 255"));
  EXPECT_FALSE(global_state.fontActivationInProgress);
}

}  // namespace
