#include "NSAppOverrideTest.h"

#include <dlfcn.h>
#include <gmock/gmock.h>

#include <memory>
#include <stdexcept>

#include "AEIdleEventHandler.h"
#include "AETypelark.h"
#include "AfterEachTest.h"
#include "FakeHost.h"
#include "FakeTamberlink.h"
#include "GlobalState.h"
#include "NSAppOverride.h"
#include "TraceLog.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

OverrideTest::OverrideTest() {
  fake_tamberlink.Install();
  global_state.picaBasicSuite = fake_host.basicSuite();
  global_state.hostMajorVersion = 114;
  global_state.suppressModalWindows = true;
  fake_host.path = u"/a.aep";
  SwizzleNSAppBeginModal();
}

AEGP_PluginInitFuncPrototype* OverrideTest::LoadCopy() {
  std::filesystem::current_path(folder.path());
  setenv("HOME", folder.path().c_str(), 1);
  std::error_code exists;
  std::filesystem::create_directory_symlink(TAMBERLINK_FRAMEWORK, "Tamberlink.framework", exists);
  static int count = 0;
  const auto file = folder.path() / ("Copy" + std::to_string(++count));
  std::filesystem::copy_file(AE_TYPELARK, file);
  void* module = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!module) throw std::runtime_error(dlerror());
  return reinterpret_cast<AEGP_PluginInitFuncPrototype*>(dlsym(module, "EntryPointFunc"));
}

bool OverrideTest::Show(const TestDialog& dialog) {
  const size_t before = receivedKeys.size();
  dialog.RunSession();
  return receivedKeys.size() > before;
}

bool OverrideTest::ShowTitled(const char* title) {
  const TestDialog& dialog = Dialog(title);
  const bool dismissed = Show(dialog);
  dialog.Hide();
  return dismissed;
}

namespace {

constexpr char kOpen[] = "Open Project";
constexpr char kFonts[] = "Resolve Fonts";
constexpr char kOther[] = "Resolve Fonts ";
constexpr char kFontsBefore114[] = "After Effects";

const bool kForgetsKeys = AfterEachTest([] {
  receivedKeys.clear();
  onKey = [] {};
});

enum class State { kQuiet, kOpenDialogSeen, kCandidates };
constexpr State kStates[] = {State::kQuiet, State::kOpenDialogSeen, State::kCandidates};

std::ostream& operator<<(std::ostream& stream, State state) {
  constexpr const char* kNames[] = {"quiet", "open dialog seen", "candidates"};
  return stream << kNames[static_cast<size_t>(state)];
}

class OverrideStateTest : public OverrideTest {
 protected:
  void Enter(State state) {
    projectWasOpened();
    if (state != State::kQuiet) Show(Dialog(kOpen));
    if (state == State::kCandidates) ShowTitled(kOther);
    fake_tamberlink.calls.clear();
  }

  // Returns the state and resets it to quiet. Shows missing fonts dialogs of a host before 114:
  // over a visible open project dialog, only the second one is dismissed.
  State TakeState() {
    global_state.hostMajorVersion = 113;
    global_state.suppressModalWindows = true;
    fake_tamberlink.enabled = true;
    State state = State::kCandidates;
    if (!ShowTitled(kFontsBefore114)) {
      state = ShowTitled(kFontsBefore114) ? State::kOpenDialogSeen : State::kQuiet;
    }
    global_state.hostMajorVersion = 114;
    global_state.endFontActivationProcess();
    projectWasOpened();
    return state;
  }
};

TEST_F(OverrideStateTest, MovesAsTheDialogsSay) {
  const State quiet = State::kQuiet, seen = State::kOpenDialogSeen, candidates = State::kCandidates;
  constexpr bool kEnabled = true, kDisabled = false;
  const struct {
    State from, to;
    const char* title;
    bool enabled, dismissed;
  } rows[] = {
      {quiet, seen, kOpen, kEnabled, false},
      {seen, seen, kOpen, kEnabled, false},
      {candidates, seen, kOpen, kEnabled, false},
      {seen, quiet, kFonts, kEnabled, true},
      {candidates, quiet, kFonts, kEnabled, true},
      {seen, candidates, kFonts, kDisabled, false},
      {candidates, candidates, kFonts, kDisabled, false},
      {seen, candidates, kOther, kEnabled, false},
      {candidates, candidates, kOther, kEnabled, false},
      {seen, candidates, kFontsBefore114, kEnabled, false},
      {quiet, quiet, kFonts, kEnabled, false},
      {quiet, quiet, kOther, kEnabled, false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message()
                 << row.from << ", " << row.title << (row.enabled ? ", enabled" : ", disabled"));
    Enter(row.from);
    fake_tamberlink.enabled = row.enabled;
    const std::string line = "Saw a DVAMacDialog titled: " + std::string(row.title) + "\n";
    testing::internal::CaptureStdout();
    EXPECT_EQ(Show(Dialog(row.title)), row.dismissed);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), line);
    // The framework is asked about candidates only.
    EXPECT_EQ(fake_tamberlink.calls.empty(), row.from == quiet || row.title == kOpen);
    EXPECT_EQ(global_state.fontActivationInProgress, row.dismissed);
    EXPECT_EQ(global_state.suppressModalWindows, !row.dismissed);
    EXPECT_EQ(TakeState(), row.to);
  }
}

TEST_F(OverrideStateTest, StaysAsItIsForOtherWindowsAndWhileItMustNotSuppress) {
  for (const State state : kStates) {
    for (const char* title : {kOpen, kFonts, kOther}) {
      SCOPED_TRACE(testing::Message() << state << ", " << title);
      Enter(state);
      testing::internal::CaptureStdout();
      EXPECT_FALSE(Show(Dialog(title, kPanelClass)));
      global_state.suppressModalWindows = false;
      EXPECT_FALSE(ShowTitled(title));
      EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
      EXPECT_THAT(fake_tamberlink.calls, IsEmpty());
      EXPECT_EQ(TakeState(), state);
    }
  }
}

TEST_F(OverrideStateTest, IsQuietOnceAProjectWasOpened) {
  fake_tamberlink.startRequested = true;
  // The last two fail to start an activation, which needs the refused suite.
  const std::pair<const char*, std::function<void()>> openings[] = {
      {"told so", projectWasOpened},
      {"by the menu command",
       [] {
         A_Boolean handled = 0;
         MenuCommandHook(nullptr, nullptr, global_state.menuCommand, 1, 0, &handled);
         EXPECT_EQ(handled, 1);
       }},
      {"seen on a tick", [] {
         global_state.currentProjectPath = "/b.aep";
         global_state.currentProjectModificationDate = 1;
         TBKCallTracker tracker;
         EXPECT_THROW(runIdleEvents(&global_state, &tracker), int);
       }}};
  for (const auto& [how, open] : openings) {
    for (const State state : kStates) {
      SCOPED_TRACE(testing::Message() << how << ", " << state);
      Enter(state);
      fake_host.refusedSuites = {{"AEGP Proj Suite", 9}};
      open();
      fake_host.refusedSuites.clear();
      EXPECT_FALSE(global_state.fontActivationInProgress);
      EXPECT_EQ(TakeState(), State::kQuiet);
    }
  }
}

TEST_F(OverrideTest, KnowsTitlesOfOtherLanguages) {
  EXPECT_FALSE(ShowTitled("プロジェクトを開く"));
  EXPECT_TRUE(ShowTitled("フォントを解決する"));
}

TEST_F(OverrideTest, SendsOneEscapeToTheWindowThatItBroughtToTheFront) {
  ShowTitled(kOpen);
  const TestDialog& dialog = Dialog(kFonts, kDerivedDialogClass);
  onKey = [&] { EXPECT_TRUE(modal_window::isVisible(dialog.window())); };
  EXPECT_TRUE(Show(dialog));
  ASSERT_EQ(receivedKeys.size(), 1u);
  const ReceivedKey& event = receivedKeys[0];
  EXPECT_EQ(event.type, 10u);
  EXPECT_EQ(event.x, 0);
  EXPECT_EQ(event.y, 0);
  EXPECT_EQ(event.modifierFlags, 0u);
  EXPECT_EQ(event.timestamp, 0);
  EXPECT_EQ(event.windowNumber, dialog.number());
  EXPECT_EQ(event.characters, "\x1B");
  EXPECT_EQ(event.charactersIgnoringModifiers, "\x1B");
  EXPECT_FALSE(event.isARepeat);
  EXPECT_EQ(event.keyCode, 53);
}

TEST_F(OverrideTest, Hosts113DismissTheirDialogOnceTheOpenDialogIsHidden) {
  global_state.hostMajorVersion = 113;
  ShowTitled(kOpen);
  const TestDialog& open = Dialog(kOpen);
  Show(open);
  EXPECT_FALSE(ShowTitled(kFontsBefore114));
  Show(open);
  EXPECT_FALSE(ShowTitled(kFonts));
  Show(open);
  open.Hide();
  EXPECT_TRUE(ShowTitled(kFontsBefore114));
}

TEST_F(OverrideTest, AnOpenDialogStaysWhenAnotherWindowGoes) {
  global_state.hostMajorVersion = 113;
  Show(Dialog(kOpen));
  { const TestDialog other(kOther, kPanelClass); }
  EXPECT_FALSE(ShowTitled(kFontsBefore114));
}

TEST_F(OverrideTest, AnOpenDialogThatIsGoneCountsAsHidden) {
  global_state.hostMajorVersion = 113;
  auto open = std::make_unique<TestDialog>(kOpen);
  Show(*open);
  const modal_window::Window* address = open->window();
  open.reset();
  // Visible windows don't count as the open dialog, not even one at its address, if the allocator
  // uses that again.
  const modal_window::Window* latest = nullptr;
  for (int count = 0; latest != address && count < 20; ++count) {
    modal_window::Window* other = Dialog(kOther).window();
    modal_window::makeKeyAndOrderFront(other);
    latest = other;
  }
  EXPECT_TRUE(ShowTitled(kFontsBefore114));
}

TEST_F(OverrideTest, WritesAnExceptionToTheLogAndTheSuppressionGoesOn) {
  ShowTitled(kOpen);
  onKey = RaisePlatformException;
  testing::internal::CaptureStderr();
  EXPECT_TRUE(ShowTitled(kFonts));
  const std::string log = testing::internal::GetCapturedStderr();
  EXPECT_THAT(log, HasSubstr("Exception when sendEscapeKeyToWindow:  exception="));
  EXPECT_THAT(log, HasSubstr("no key window"));
  EXPECT_TRUE(global_state.fontActivationInProgress);
  EXPECT_FALSE(ShowTitled(kFonts));
}

TEST_F(OverrideTest, TracesEachDialogAndWhatItDecided) {
  TraceLog traces;
  const auto decided = [&](const char* title, const char* kind = kDialogClass) {
    traces.lines.clear();
    Show(Dialog(title, kind));
    EXPECT_THAT(traces.lines.front(),
                "A modal dialog begins: class '" + std::string(kind) + "', title '" + title + "'");
    EXPECT_EQ(traces.lines.at(1), "The application has the override");
    return traces.lines.back();
  };
  EXPECT_EQ(decided(kFonts), "It passes: no open project dialog came before it");
  EXPECT_EQ(decided(kOpen), "It passes: it is the open project dialog");
  EXPECT_EQ(decided(kFonts, kPanelClass), "It passes: it isn't a DVAMacDialog");
  EXPECT_EQ(decided(kOther), "It passes: it isn't the missing fonts dialog");
  fake_tamberlink.enabled = false;
  EXPECT_EQ(decided(kFonts), "It passes: the framework reports the plug-in disabled");
  fake_tamberlink.enabled = true;
  EXPECT_EQ(decided(kFonts), "It gets the Escape key");
  EXPECT_EQ(decided(kOpen), "It passes: the override is off");
}

TEST_F(OverrideTest, LetsOtherExceptionsPass) {
  ShowTitled(kOpen);
  onKey = [] { throw std::runtime_error("not the platform's"); };
  EXPECT_THROW(ShowTitled(kFonts), std::runtime_error);
  EXPECT_FALSE(global_state.fontActivationInProgress);
}

TEST_F(OverrideTest, AMissingSuiteStartsNoProcessAndTheSessionBegins) {
  ShowTitled(kOpen);
  fake_host.refusedSuites = {{"AEGP Proj Suite", 9}};
  EXPECT_TRUE(ShowTitled(kFonts));
  EXPECT_FALSE(global_state.fontActivationInProgress);
}

TEST_F(OverrideTest, CopiesOfThePluginEachSeeADialogOnce) {
  auto* const second = LoadCopy();
  auto* const third = LoadCopy();
  EXPECT_EQ(second(fake_host.basicSuite(), 114, 0, 5, nullptr), 0);
  EXPECT_EQ(third(fake_host.basicSuite(), 114, 0, 6, nullptr), 0);
  TraceLog traces;
  traceModalOverride();
  traceModalOverride();
  EXPECT_THAT(traces.lines,
              ElementsAre("The application has another implementation than the override"));
  // A second exchange by one copy.
  SwizzleNSAppBeginModal();
  const std::string line = "Saw a DVAMacDialog titled: " + std::string(kOpen) + "\n";
  testing::internal::CaptureStdout();
  Show(Dialog(kOpen));
  EXPECT_EQ(testing::internal::GetCapturedStdout(), line + line + line);
}

TEST_F(OverrideTest, AWindowIsOfNoClassThatDoesNotExist) {
  modal_window::Window* window = Dialog(kOpen).window();
  EXPECT_TRUE(modal_window::isKindOfClass(window, kDialogClass));
  EXPECT_FALSE(modal_window::isKindOfClass(window, kDerivedDialogClass));
  EXPECT_FALSE(modal_window::isKindOfClass(window, "NoSuchClass"));
}

}  // namespace
