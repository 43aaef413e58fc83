#include "AEIdleEventHandler.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FakeHost.h"
#include "FakeTamberlink.h"
#include "GlobalState.h"
#include "TemporaryFolder.h"
#include "TraceLog.h"
#include "VirtualTime.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// The names of the flags that are set.
std::vector<std::string> Flags(const TBKCallTracker& tracker) {
  std::vector<std::string> flags;
  const auto add = [&](bool set, const char* name) {
    if (set) flags.emplace_back(name);
  };
  add(tracker.backgroundForegroundAppCalled, "switch");
  add(tracker.handleCreateNewDocumentCalled, "create");
  add(tracker.handleCloseDocumentCalled, "close");
  add(tracker.handleOpenExistingDocumentCalled, "open");
  add(tracker.handleSaveDocumentCalled, "save");
  add(tracker.invokeResolveDialogCalled, "resolve");
  add(tracker.invokeRestrictedFontsDialogCalled, "restricted");
  add(tracker.openProjectCalled, "reopen");
  add(tracker.setPathForDocumentCalled, "path");
  add(tracker.startFontActivationProcessCalled, "start");
  return flags;
}

class IdleEventsTest : public testing::Test {
 protected:
  IdleEventsTest() {
    fake_tamberlink.Install();
    state.picaBasicSuite = fake_host.basicSuite();
    fake_host.path = u"/a.aep";
    state.updateGlobalState();
    fake_host.calls.clear();
  }

  std::vector<std::string> Run() {
    TBKCallTracker tracker;
    EXPECT_EQ(runIdleEvents(&state, &tracker), 0);
    return Flags(tracker);
  }

  GlobalState state;
};

struct EventCase {
  const char* lastPath;
  bool lastDirty;
  const char* currentPath;
  bool currentDirty;
  int64_t date;
  std::vector<std::string> flags;
};

TEST_F(IdleEventsTest, EventsFollowFromTwoSnapshots) {
  constexpr int64_t now = 1000;
  const std::vector<std::string> open{"start"}, close{"switch", "close"}, save{"save"},
      saveAs{"create", "save", "path"}, none;
  const EventCase cases[] = {
      {"/a", false, "", false, 0, close},
      {"/a", true, "", true, 0, close},
      {"/a", false, "/b", false, now - 3, saveAs},
      {"/a", false, "/b", false, now + 5, saveAs},
      {"/a", false, "/b", false, now - 4, open},
      {"", true, "/b", false, now - 3, saveAs},
      {"", false, "/b", false, now - 3, open},
      {"", true, "/b", false, now - 4, open},
      {"", false, "/b", false, 0, saveAs},
      {"/a", false, "/b", false, 0, saveAs},
      {"/a", false, "/b", false, -1, open},
      {"/a", true, "/a", false, now, save},
      {"/a", false, "/a", false, now, none},
      {"/a", false, "/a", true, now, none},
      {"", true, "", false, 0, none},
      {"/A", false, "/a", false, 1, open},
  };
  for (const EventCase& row : cases) {
    SCOPED_TRACE(testing::Message() << row.lastPath << " to " << row.currentPath << " with date "
                                    << row.date << " dirty " << row.lastDirty);
    state.fontActivationInProgress = false;
    state.lastProjectPath = row.lastPath;
    state.lastProjectDirty = row.lastDirty;
    state.currentProjectPath = row.currentPath;
    state.currentProjectDirty = row.currentDirty;
    state.currentProjectModificationDate = row.date;
    state.currentTime = now;
    EXPECT_EQ(Run(), row.flags);
  }
}

TEST_F(IdleEventsTest, CloseReportsTheFormerPath) {
  TraceLog traces;
  Run();
  fake_tamberlink.calls.clear();
  traces.lines.clear();
  state.lastProjectPath = "/a.aep";
  state.currentProjectPath.clear();
  Run();
  EXPECT_THAT(fake_tamberlink.calls, ElementsAre("HandleCloseDocument '/a.aep' ''"));
  const char* const enter = "BackgroundForegroundSwitcher::backgroundForegroundApp";
  const char* const leave = "Exiting BackgroundForegroundSwitcher::backgroundForegroundApp";
  EXPECT_THAT(traces.lines,
              ElementsAre("Currently opened project has changed! New project path: ''",
                          "Handling Close", enter, leave, enter, leave, enter, leave));
}

TEST_F(IdleEventsTest, SaveAsMakesADocumentGivesItThePathAndSaves) {
  state.lastProjectPath = "/old.aep";
  state.currentProjectPath = "/new.aep";
  state.currentProjectModificationDate = 0;
  Run();
  EXPECT_THAT(fake_tamberlink.calls,
              ElementsAre("PluginIsEnabled", "HandleCreateNewDocument 256",
                          "SetPathForDocument '/new.aep' 255", "HandleSaveDocument '/new.aep' ''"));
}

TEST_F(IdleEventsTest, OpenStartsAProcessWhateverTheHostSays) {
  TraceLog traces;
  fake_host.path.clear();
  state.lastProjectPath = "/old.aep";
  state.currentProjectModificationDate = 1;
  EXPECT_THAT(Run(), ElementsAre("start"));
  EXPECT_FALSE(state.fontActivationInProgress);
  EXPECT_THAT(
      traces.lines,
      ElementsAre("Currently opened project has changed! New project path: '/a.aep'",
                  "Handling Open", "Starting Font Activation Process for a newly opened project."));
}

TEST_F(IdleEventsTest, TheFrameworkIsAskedAtMostOnceIn10Seconds) {
  state.lastProjectPath = state.currentProjectPath;
  int asked = 0;
  for (const int seconds : {0, 0, 9, 1, 9, 1}) {
    virtual_time += seconds;
    Run();
    if (seconds == 1) ++asked;
    EXPECT_EQ(fake_tamberlink.calls.size(), 1u + static_cast<size_t>(asked));
  }
}

TEST_F(IdleEventsTest, DisabledMeansNoEventsAndOneMessage) {
  fake_tamberlink.enabled = false;
  EXPECT_THAT(Run(), IsEmpty());
  EXPECT_FALSE(state.suppressModalWindows);
  fake_tamberlink.showLogin = true;
  Run();
  Run();
  EXPECT_THAT(fake_tamberlink.TakeCalls(),
              ElementsAre("PluginIsEnabled", "ShouldShowLogin", "ShouldShowLogin",
                          "ShowNotLoggedInMessageBox"));
  // Enabled again, the message is armed again.
  fake_tamberlink.enabled = true;
  virtual_time += 10;
  state.lastProjectPath = state.currentProjectPath;
  Run();
  EXPECT_TRUE(state.suppressModalWindows);
  fake_tamberlink.enabled = false;
  virtual_time += 10;
  Run();
  EXPECT_THAT(fake_tamberlink.TakeCalls(),
              ElementsAre("PluginIsEnabled", "PluginIsEnabled", "ShouldShowLogin",
                          "ShowNotLoggedInMessageBox"));
}

TEST(IdleEvents, WithoutTheFrameworkNothingIsEnabled) {
  const TemporaryFolder home;
  setenv("HOME", home.path().c_str(), 1);
  GlobalState state;
  state.suppressModalWindows = true;
  TBKCallTracker tracker;
  EXPECT_EQ(runIdleEvents(&state, &tracker), 0);
  EXPECT_FALSE(state.suppressModalWindows);
}

class ActivationProcessTest : public IdleEventsTest {
 protected:
  ActivationProcessTest() { Start(); }

  void Start() {
    state.startFontActivationProcess();
    fake_host.TakeCalls();
    fake_tamberlink.calls.clear();
  }

  std::vector<std::string> Step(int32_t tick) {
    state.ticksSinceActivationStart = tick;
    TBKCallTracker tracker;
    error = runStepInFontActivationProcess(&state, &tracker);
    return Flags(tracker);
  }

  // Runs the first step and returns whether the project was closed.
  bool CloseAfter(const FakeTamberlink::OpenAnswer& answer) {
    fake_tamberlink.open = {answer};
    fake_host.TakeCalls();
    fake_tamberlink.calls.clear();
    state.projectIsReopening = false;
    Step(1);
    return state.projectIsReopening;
  }

  A_Err error = 0;
};

TEST_F(ActivationProcessTest, ScheduleOfACleanProjectWithActivatedFonts) {
  fake_tamberlink.open.front().count = 2;
  for (int32_t tick = 0; tick < 30; ++tick) {
    SCOPED_TRACE(tick);
    const auto flags = Step(tick);
    const auto calls = fake_host.TakeCalls();
    switch (tick) {
      case 1:
        EXPECT_THAT(flags, ElementsAre("open"));
        EXPECT_THAT(calls, ElementsAre("AEGP_GetProjectByIndex(0)", "AEGP_ProjectIsDirty",
                                       "AEGP_NewProject"));
        break;
      case 3:
        EXPECT_THAT(flags, ElementsAre("switch"));
        EXPECT_THAT(calls, ElementsAre("AEGP_UpdateFontList", "PF_RefreshAllWindows"));
        break;
      case 10:
        EXPECT_THAT(flags, ElementsAre("reopen"));
        EXPECT_THAT(calls, ElementsAre("AEGP_OpenProjectFromPath"));
        EXPECT_EQ(fake_host.openedPath, u"/a.aep");
        break;
      default:
        EXPECT_THAT(flags, IsEmpty());
        EXPECT_THAT(calls, IsEmpty());
    }
    EXPECT_EQ(state.projectIsReopening, tick >= 1 && tick < 25);
    EXPECT_EQ(state.fontActivationInProgress, tick < 25);
  }
  EXPECT_THAT(fake_tamberlink.calls, ElementsAre("HandleOpenExistingDocument '/a.aep'"));
}

TEST_F(ActivationProcessTest, NothingActivatedMeansNoReopening) {
  Step(1);
  EXPECT_FALSE(state.projectIsReopening);
  EXPECT_THAT(Step(10), IsEmpty());
}

TEST_F(ActivationProcessTest, ADirtyProjectStaysOpen) {
  fake_host.dirty = true;
  EXPECT_FALSE(CloseAfter({.count = 1}));
  EXPECT_THAT(fake_host.TakeCalls(), testing::Not(testing::Contains("AEGP_NewProject")));
}

TEST_F(ActivationProcessTest, AFailedCloseIsNotNoticed) {
  fake_host.failures["AEGP_NewProject"] = 3;
  EXPECT_TRUE(CloseAfter({.count = 1}));
}

TEST_F(ActivationProcessTest, ResultSelectsTheDialog) {
  struct {
    uint32_t result;
    const char* text;
    std::vector<std::string> flags;
  } const cases[] = {
      {CoreErrorCodes::kSuccess, "F", {"open", "resolve"}},
      {CoreErrorCodes::kNotFound, "F", {"open", "resolve"}},
      {CoreErrorCodes::kAlreadyInitialized, "F", {"open", "restricted"}},
      {CoreErrorCodes::kAlreadyInitialized, "", {"open"}},
      {CoreErrorCodes::kSuccess, "", {"open"}},
      {CoreErrorCodes::kItemNotHandled, "F", {"open"}},
      {CoreErrorCodes::kIndexOutOfRange, "F", {"open"}},
      {CoreErrorCodes::kError, "F", {"open"}},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.result);
    fake_tamberlink.open = {{.result = row.result, .text = row.text}};
    EXPECT_EQ(Step(1), row.flags);
    EXPECT_EQ(state.fontsToResolve + state.restrictedFonts, "");
  }
}

TEST_F(ActivationProcessTest, IndexOutOfRangeIsRepeatedOnce) {
  fake_tamberlink.open = {{.result = CoreErrorCodes::kIndexOutOfRange},
                          {.result = CoreErrorCodes::kIndexOutOfRange},
                          {.count = 1}};
  Step(1);
  EXPECT_EQ(fake_tamberlink.TakeCalls().size(), 2u);
  fake_tamberlink.open = {{.result = CoreErrorCodes::kIndexOutOfRange}, {.text = "F"}};
  EXPECT_THAT(Step(1), ElementsAre("open", "resolve"));
}

TEST_F(ActivationProcessTest, TheUsersChoiceIsActivated) {
  struct {
    uint32_t result;
    const char* choice;
    bool activated;
  } const cases[] = {{CoreErrorCodes::kSuccess, "G", true},
                     {CoreErrorCodes::kItemNotHandled, "G", true},
                     {CoreErrorCodes::kSuccess, "", false},
                     {CoreErrorCodes::kNotFound, "G", false}};
  fake_tamberlink.chosenCount = 1;
  for (const auto& row : cases) {
    SCOPED_TRACE(testing::Message() << row.result << row.choice);
    fake_tamberlink.resolve = {row.result, row.choice};
    EXPECT_EQ(CloseAfter({.text = "F"}), row.activated);
    EXPECT_EQ(fake_tamberlink.calls.size(), row.activated ? 3u : 2u);
  }
  fake_tamberlink.resolve = {};
  EXPECT_FALSE(CloseAfter({.count = -1}));
}

TEST_F(ActivationProcessTest, TheFrameworksClaimsStayWithinTheBuffer) {
  const std::string tooLong(0x20000, 'x');
  fake_tamberlink.resolve.text = tooLong;
  for (const uint64_t claimed : {uint64_t{0}, uint64_t{1} << 40, uint64_t{10}}) {
    SCOPED_TRACE(claimed);
    CloseAfter({.text = tooLong, .size = claimed});
    const uint64_t size = claimed == 10 ? 10 : 0x20000;
    const auto calls = fake_tamberlink.TakeCalls();
    ASSERT_EQ(calls.size(), 3u);
    EXPECT_EQ(calls[1],
              "InvokeResolveDialog " + std::to_string(size - 1) + " of " + std::to_string(size));
    EXPECT_EQ(calls[2].size(), std::string("ActivateChosenFonts '/a.aep' ''").size() + 0x1FFFF);
  }
}

TEST_F(ActivationProcessTest, TheEndComesOnAnyLaterTick) {
  Step(40);
  EXPECT_FALSE(state.fontActivationInProgress);
}

TEST_F(ActivationProcessTest, RunsInsteadOfTheListenerWhileEnabled) {
  state.lastProjectPath = "/other.aep";
  state.ticksSinceActivationStart = 2;
  EXPECT_THAT(Run(), IsEmpty());
  fake_tamberlink.enabled = false;
  virtual_time += 10;
  state.ticksSinceActivationStart = 25;
  EXPECT_THAT(Run(), IsEmpty());
  EXPECT_TRUE(state.fontActivationInProgress);
}

}  // namespace
