#include "AEIdleEventHandler.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

#include "FakeHost.h"
#include "FakeTamberlink.h"
#include "FontActivationProcess.h"
#include "GlobalState.h"
#include "TraceLog.h"
#include "VirtualTime.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

// Returns short names of the flags that are set.
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

  // Lets the plug-in show its message again.
  ~IdleEventsTest() override {
    fake_tamberlink.enabled = true;
    virtual_time += 10;
    state.fontActivationInProgress = false;
    Run();
  }

  std::vector<std::string> Run() {
    TBKCallTracker tracker;
    EXPECT_EQ(runIdleEvents(&state, &tracker), 0);
    return Flags(tracker);
  }

  GlobalState state;
};

struct Event {
  const char* trace;
  std::vector<std::string> flags;
};

TEST_F(IdleEventsTest, EventsFollowFromTwoSnapshots) {
  constexpr int64_t kNow = 1000;
  const Event open{"Handling Open", {"start"}}, close{"Handling Close", {"switch", "close"}},
      save{"Handling Save", {"save"}}, saveAs{"Handling Save As", {"create", "save", "path"}},
      none{nullptr, {}};
  const struct {
    const char* lastPath;
    bool lastDirty;
    const char* currentPath;
    bool currentDirty;
    int64_t date;
    const Event& event;
  } rows[] = {
      {"/a", false, "", false, 0, close},
      {"/a", true, "", true, 0, close},
      {"/a", false, "/b", false, kNow - 3, saveAs},
      {"/a", false, "/b", false, kNow + 5, saveAs},
      {"/a", false, "/b", false, kNow - 4, open},
      {"", true, "/b", false, kNow - 3, saveAs},
      {"", false, "/b", false, kNow - 3, open},
      {"", true, "/b", false, kNow - 4, open},
      {"", false, "/b", false, 0, saveAs},
      {"/a", false, "/b", false, 0, saveAs},
      {"/a", false, "/b", false, -1, open},
      {"/a", true, "/a", false, kNow, save},
      {"/a", false, "/a", false, kNow, none},
      {"/a", false, "/a", true, kNow, none},
      {"", true, "", false, 0, none},
      {"/A", false, "/a", false, 1, open},
  };
  TraceLog traces;
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.lastPath << " to " << row.currentPath << " with date "
                                    << row.date << " dirty " << row.lastDirty);
    state.fontActivationInProgress = false;
    state.lastProjectPath = row.lastPath;
    state.lastProjectDirty = row.lastDirty;
    state.currentProjectPath = row.currentPath;
    state.currentProjectDirty = row.currentDirty;
    state.currentProjectModificationDate = row.date;
    state.currentTime = kNow;
    traces.lines.clear();
    EXPECT_EQ(Run(), row.event.flags);
    if (row.event.trace) {
      EXPECT_THAT(traces.lines, Contains(row.event.trace));
    }
  }
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

TEST_F(IdleEventsTest, EachTimeThatItIsDisabledTheUserGetsOneMessage) {
  state.lastProjectPath = state.currentProjectPath;
  fake_tamberlink.enabled = false;
  Run();
  EXPECT_THAT(fake_tamberlink.TakeCalls(), ElementsAre("PluginIsEnabled", "ShouldShowLogin"));
  fake_tamberlink.showLogin = true;
  for (const bool enabled : {false, true, false}) {
    fake_tamberlink.enabled = enabled;
    virtual_time += 10;
    Run();
    EXPECT_THAT(Run(), IsEmpty());
    EXPECT_EQ(state.suppressModalWindows, enabled);
  }
  EXPECT_THAT(fake_tamberlink.calls,
              ElementsAre("PluginIsEnabled", "ShouldShowLogin", "ShowNotLoggedInMessageBox",
                          "PluginIsEnabled", "PluginIsEnabled", "ShouldShowLogin",
                          "ShowNotLoggedInMessageBox"));
}

TEST_F(IdleEventsTest, AnActivationDoesNotBringTheMessageBack) {
  fake_tamberlink.showLogin = true;
  state.startFontActivationProcess();
  for (const bool enabled : {false, true, false}) {
    fake_tamberlink.enabled = enabled;
    virtual_time += 10;
    Run();
  }
  EXPECT_THAT(fake_tamberlink.calls,
              ElementsAre("PluginIsEnabled", "ShouldShowLogin", "ShowNotLoggedInMessageBox",
                          "PluginIsEnabled", "PluginIsEnabled"));
}

class ActivationProcessTest : public IdleEventsTest {
 protected:
  ActivationProcessTest() {
    state.startFontActivationProcess();
    fake_host.calls.clear();
  }

  std::vector<std::string> Step(int32_t tick) {
    state.ticksSinceActivationStart = tick;
    TBKCallTracker tracker;
    EXPECT_EQ(runStepInFontActivationProcess(&state, &tracker), 0);
    return Flags(tracker);
  }
};

TEST_F(ActivationProcessTest, ScheduleOfACleanProjectWithActivatedFonts) {
  fake_tamberlink.open.front().count = 2;
  using Texts = std::vector<std::string>;
  std::map<int32_t, std::pair<Texts, Texts>> expected = {
      {1, {{"open"}, {"AEGP_GetProjectByIndex(0)", "AEGP_ProjectIsDirty", "AEGP_NewProject"}}},
      {3, {{"switch"}, {"AEGP_UpdateFontList", "PF_RefreshAllWindows"}}},
      {10, {{"reopen"}, {"AEGP_OpenProjectFromPath"}}}};
  for (int32_t tick = 0; tick < 30; ++tick) {
    SCOPED_TRACE(tick);
    EXPECT_EQ(Step(tick), expected[tick].first);
    EXPECT_EQ(fake_host.TakeCalls(), expected[tick].second);
    EXPECT_EQ(state.projectIsReopening, tick >= 1 && tick < 25);
    EXPECT_EQ(state.fontActivationInProgress, tick < 25);
  }
  EXPECT_EQ(fake_host.openedPath, u"/a.aep");
  EXPECT_THAT(fake_tamberlink.calls,
              ElementsAre("HandleOpenExistingDocument '/a.aep' '' of 131072, 0"));
}

TEST_F(ActivationProcessTest, ACountAboveZeroClosesTheProjectWhateverTheResult) {
  fake_tamberlink.chosen = "F";
  const struct {
    uint32_t result;
    int32_t countOnOpen, countByChoice;
    bool closes;
  } rows[] = {
      {CoreErrorCodes::kSuccess, 0, 0, false},      {CoreErrorCodes::kSuccess, 0, 1, true},
      {CoreErrorCodes::kSuccess, -1, 0, false},     {CoreErrorCodes::kSuccess, 0, -1, false},
      {CoreErrorCodes::kUnknownError, 0, 1, false}, {CoreErrorCodes::kUnknownError, 1, 0, true}};
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message()
                 << row.result << ": " << row.countOnOpen << ", " << row.countByChoice);
    state.projectIsReopening = false;
    fake_tamberlink.open = {{.result = row.result, .text = "F", .count = row.countOnOpen}};
    fake_tamberlink.chosenCount = row.countByChoice;
    Step(1);
    EXPECT_EQ(state.projectIsReopening, row.closes);
  }
}

TEST_F(ActivationProcessTest, ARepeatedCallGetsWhatTheFirstOneLeft) {
  fake_tamberlink.open = {
      {.result = CoreErrorCodes::kIndexOutOfRange, .text = "F", .count = 3, .size = 10}, {}};
  Step(1);
  EXPECT_THAT(fake_tamberlink.calls,
              ElementsAre("HandleOpenExistingDocument '/a.aep' '' of 131072, 0",
                          "HandleOpenExistingDocument '/a.aep' 'F' of 10, 3"));
}

TEST_F(ActivationProcessTest, TheFrameworksClaimsStayWithinTheBuffer) {
  const std::string tooLong(0x20000, 'x');
  fake_tamberlink.chosen = tooLong;
  for (const uint64_t claimed : {uint64_t{0}, uint64_t{1} << 40, uint64_t{10}}) {
    SCOPED_TRACE(claimed);
    fake_tamberlink.open = {{.text = tooLong, .size = claimed}};
    Step(1);
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
  EXPECT_EQ(state.activationProjectPath, "");
}

}  // namespace
