#include "NSAppOverride.h"

#import <AppKit/AppKit.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>

#include "CocoaFakes.h"
#include "FakeHost.h"
#include "FakeTamberlink.h"
#include "GlobalState.h"
#include "ModalWindow.h"

namespace {

// The key event as a window got it.
struct KeyEvent {
  NSUInteger type;
  double x, y;
  NSUInteger modifierFlags;
  double timestamp;
  NSInteger windowNumber;
  std::string characters, charactersIgnoringModifiers;
  bool isARepeat;
  unsigned short keyCode;

  explicit KeyEvent(NSEvent* event)
      : type([event type]),
        x([event locationInWindow].x),
        y([event locationInWindow].y),
        modifierFlags([event modifierFlags]),
        timestamp([event timestamp]),
        windowNumber([event windowNumber]),
        characters([[event characters] UTF8String]),
        charactersIgnoringModifiers([[event charactersIgnoringModifiers] UTF8String]),
        isARepeat([event isARepeat]),
        keyCode([event keyCode]) {}
};

// What the dialogs saw.
std::vector<KeyEvent> events;
std::vector<id> frontSenders;
// What they do on an event.
std::function<void()> onEvent = [] {};

}  // namespace

// As the plug-in adds them.
@interface NSApplication (Override)
- (bool)isThisTheOpenProjectDialog:(NSWindow*)window;
- (bool)isMissingFontsWindow:(NSWindow*)window inAEMajorVersion:(int32_t)version;
- (void)suppressWindowAndStartFontActivationProcess:(NSWindow*)window
                                   inAEMajorVersion:(int32_t)version;
@end

@interface DVAMacDialog : NSWindow
@end

@implementation DVAMacDialog
- (void)sendEvent:(NSEvent*)event {
  if ([event type] != NSKeyDown) return [super sendEvent:event];
  events.emplace_back(event);
  onEvent();
}
- (void)makeKeyAndOrderFront:(id)sender {
  frontSenders.push_back(sender);
  [super makeKeyAndOrderFront:sender];
}
- (void)dealloc {
  ClearWeakReferences(self);
  [super dealloc];
}
@end

@interface DVAMacFontDialog : DVAMacDialog
@end
@implementation DVAMacFontDialog
@end

namespace {

using testing::HasSubstr;
using testing::IsEmpty;

constexpr char kOpen[] = "Open Project";
constexpr char kFonts[] = "Resolve Fonts";
constexpr char kOther[] = "Other";
constexpr char kFontsBefore114[] = "After Effects";

class OverrideTest : public testing::Test {
 protected:
  OverrideTest() {
    [NSApplication sharedApplication];
    fake_tamberlink.Install();
    global_state.picaBasicSuite = fake_host.basicSuite();
    global_state.hostMajorVersion = 114;
    global_state.suppressModalWindows = true;
    fake_host.path = u"/a.aep";
    SwizzleNSAppBeginModal();
  }
  ~OverrideTest() override { [mPool release]; }

  // Owned by the caller.
  static NSWindow* NewWindow(Class kind, const char* title) {
    NSWindow* window = [[kind alloc] initWithContentRect:NSMakeRect(0, 0, 200, 100)
                                               styleMask:NSTitledWindowMask
                                                 backing:NSBackingStoreBuffered
                                                   defer:NO];
    [window setReleasedWhenClosed:NO];
    [window setTitle:[NSString stringWithUTF8String:title]];
    return window;
  }

  // A dialog that stays on screen until the test ends.
  NSWindow* Dialog(const char* title) {
    return [NewWindow([DVAMacDialog class], title) autorelease];
  }

  // Begins and ends a session. Whether the window was dismissed.
  static bool Show(NSWindow* window) {
    const size_t before = events.size();
    const NSModalSession session = [NSApp beginModalSessionForWindow:window];
    EXPECT_NE(session, nullptr);
    EXPECT_EQ([NSApp modalWindow], window);
    EXPECT_TRUE([window isVisible]);
    [NSApp endModalSession:session];
    return events.size() > before;
  }

  bool ShowTitled(const char* title) {
    NSWindow* window = Dialog(title);
    const bool dismissed = Show(window);
    [window orderOut:nil];
    return dismissed;
  }

 private:
  NSAutoreleasePool* mPool = [[NSAutoreleasePool alloc] init];
};

enum class State { kQuiet, kOpenDialogSeen, kCandidates };

class OverrideStateTest : public OverrideTest {
 protected:
  void Enter(State state) {
    projectWasOpened();
    if (state != State::kQuiet) Show(Dialog(kOpen));
    if (state == State::kCandidates) ShowTitled(kOther);
  }

  // Leaves the quiet state. By what hosts before 114 do: their dialog isn't dismissed over a
  // visible open project dialog, and then that one is forgotten.
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
    SCOPED_TRACE(testing::Message() << static_cast<int>(row.from) << row.title << row.enabled);
    Enter(row.from);
    fake_tamberlink.enabled = row.enabled;
    const std::string line = "Saw a DVAMacDialog titled: " + std::string(row.title) + "\n";
    testing::internal::CaptureStdout();
    EXPECT_EQ(Show(Dialog(row.title)), row.dismissed);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), line);
    EXPECT_EQ(global_state.fontActivationInProgress, row.dismissed);
    EXPECT_EQ(global_state.suppressModalWindows, !row.dismissed);
    EXPECT_EQ(TakeState(), row.to);
  }
}

TEST_F(OverrideStateTest, StaysAsItIsForOtherWindowsAndWhileItMustNotSuppress) {
  for (const State state : {State::kQuiet, State::kOpenDialogSeen, State::kCandidates}) {
    for (const char* title : {kOpen, kFonts, kOther}) {
      SCOPED_TRACE(testing::Message() << static_cast<int>(state) << title);
      Enter(state);
      fake_tamberlink.TakeCalls();
      testing::internal::CaptureStdout();
      EXPECT_FALSE(Show([NewWindow([NSPanel class], title) autorelease]));
      global_state.suppressModalWindows = false;
      EXPECT_FALSE(ShowTitled(title));
      EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
      EXPECT_THAT(fake_tamberlink.calls, IsEmpty());
      EXPECT_EQ(TakeState(), state);
    }
  }
}

TEST_F(OverrideStateTest, IsQuietOnceAProjectWasOpened) {
  for (const State state : {State::kQuiet, State::kOpenDialogSeen, State::kCandidates}) {
    Enter(state);
    projectWasOpened();
    EXPECT_EQ(TakeState(), State::kQuiet);
  }
}

TEST_F(OverrideTest, DismissesTheFontsDialogInEveryLanguage) {
  const char* const pairs[][2] = {
      {"Open Project", "Resolve Fonts"},           {"Ouvrir un projet", "Résoudre les polices"},
      {"Projekt öffnen", "Schriftarten auflösen"}, {"Abrir proyecto", "Corregir fuentes"},
      {"Apri progetto", "Risoluzione font"},       {"Abrir projeto", "Solucionar fontes"},
      {"プロジェクトを開く", "フォントを解決する"}};
  for (const auto& [open, fonts] : pairs) {
    EXPECT_FALSE(ShowTitled(open));
    EXPECT_TRUE(ShowTitled(fonts)) << fonts;
    global_state.endFontActivationProcess();
  }
}

TEST_F(OverrideTest, SendsOneEscapeToTheWindowThatItBroughtToTheFront) {
  ShowTitled(kOpen);
  NSWindow* dialog = [NewWindow([DVAMacFontDialog class], kFonts) autorelease];
  onEvent = [&] { EXPECT_TRUE([dialog isVisible]); };
  EXPECT_TRUE(Show(dialog));
  EXPECT_THAT(frontSenders, testing::Contains(NSApp));
  ASSERT_EQ(events.size(), 1u);
  const KeyEvent& event = events[0];
  EXPECT_EQ(event.type, 10u);
  EXPECT_EQ(event.x, 0);
  EXPECT_EQ(event.y, 0);
  EXPECT_EQ(event.modifierFlags, 0u);
  EXPECT_EQ(event.timestamp, 0);
  EXPECT_EQ(event.windowNumber, [dialog windowNumber]);
  EXPECT_EQ(event.characters, "\x1B");
  EXPECT_EQ(event.charactersIgnoringModifiers, "\x1B");
  EXPECT_FALSE(event.isARepeat);
  EXPECT_EQ(event.keyCode, 53);
}

TEST_F(OverrideTest, Hosts113DismissTheirDialogOnceTheOpenDialogIsHidden) {
  global_state.hostMajorVersion = 113;
  NSWindow* open = Dialog(kOpen);
  Show(open);
  EXPECT_FALSE(ShowTitled(kFontsBefore114));
  Show(open);
  [open orderOut:nil];
  EXPECT_TRUE(ShowTitled(kFontsBefore114));
}

TEST_F(OverrideTest, AnOpenDialogThatIsGoneCountsAsHidden) {
  global_state.hostMajorVersion = 113;
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  NSWindow* open = NewWindow([DVAMacDialog class], kOpen);
  Show(open);
  const void* address = open;
  [open close];
  [open release];
  [pool release];
  // A window at the same address, which is visible, isn't the open dialog.
  std::vector<NSWindow*> others;
  while (others.empty() || (others.back() != address && others.size() < 20)) {
    others.push_back(NewWindow([DVAMacDialog class], kOther));
    [others.back() orderFront:nil];
  }
  EXPECT_TRUE(ShowTitled(kFontsBefore114));
}

TEST_F(OverrideTest, WritesAnExceptionToTheLogAndTheSuppressionGoesOn) {
  ShowTitled(kOpen);
  onEvent = [] { [NSException raise:@"NoKeyWindow" format:@"no key window"]; };
  testing::internal::CaptureStderr();
  EXPECT_TRUE(ShowTitled(kFonts));
  const std::string log = testing::internal::GetCapturedStderr();
  EXPECT_THAT(log, HasSubstr("Exception when sendEscapeKeyToWindow:  exception="));
  EXPECT_THAT(log, HasSubstr("no key window"));
  EXPECT_TRUE(global_state.fontActivationInProgress);
  EXPECT_FALSE(ShowTitled(kFonts));
}

TEST_F(OverrideTest, LetsOtherExceptionsPass) {
  ShowTitled(kOpen);
  onEvent = [] { throw std::runtime_error("not Cocoa's"); };
  EXPECT_THROW(ShowTitled(kFonts), std::runtime_error);
  onEvent = [] { @throw @"not an exception"; };
  EXPECT_ANY_THROW(ShowTitled(kFonts));
  EXPECT_FALSE(global_state.fontActivationInProgress);
}

TEST_F(OverrideTest, AMissingSuiteStartsNoProcessAndTheSessionBegins) {
  ShowTitled(kOpen);
  fake_host.refusedSuites = {{"AEGP Proj Suite", 9}};
  EXPECT_TRUE(ShowTitled(kFonts));
  EXPECT_FALSE(global_state.fontActivationInProgress);
}

TEST_F(OverrideTest, TheApplicationAnswersTheSameByItsMethods) {
  NSWindow* open = Dialog(kOpen);
  NSWindow* fonts = Dialog(kFonts);
  EXPECT_TRUE([NSApp isThisTheOpenProjectDialog:open]);
  EXPECT_FALSE([NSApp isThisTheOpenProjectDialog:fonts]);
  EXPECT_TRUE([NSApp isMissingFontsWindow:fonts inAEMajorVersion:114]);
  EXPECT_FALSE([NSApp isMissingFontsWindow:fonts inAEMajorVersion:113]);
  EXPECT_TRUE([NSApp isMissingFontsWindow:Dialog(kFontsBefore114) inAEMajorVersion:113]);
  [NSApp suppressWindowAndStartFontActivationProcess:fonts inAEMajorVersion:114];
  EXPECT_EQ(events.size(), 1u);
  EXPECT_TRUE(global_state.fontActivationInProgress);
}

TEST_F(OverrideTest, AWindowIsOfNoClassThatDoesNotExist) {
  auto* window = reinterpret_cast<ModalWindow*>(Dialog(kOpen));
  EXPECT_TRUE(isKindOfClass(window, "DVAMacDialog"));
  EXPECT_FALSE(isKindOfClass(window, "DVAMacFontDialog"));
  EXPECT_FALSE(isKindOfClass(window, "NoSuchClass"));
}

}  // namespace
