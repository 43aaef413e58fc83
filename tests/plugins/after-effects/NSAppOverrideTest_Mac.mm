#include "NSAppOverrideTest.h"

#import <AppKit/AppKit.h>
#include <dlfcn.h>
#include <gmock/gmock.h>
#import <objc/runtime.h>

#include "FakeHost.h"
#include "GlobalState.h"
#include "WeakReferences.h"

// The methods that the plug-in adds.
@interface NSApplication (Override)
- (NSModalSession)beginModalOverride:(NSWindow*)window;
- (bool)isThisTheOpenProjectDialog:(NSWindow*)window;
- (bool)isMissingFontsWindow:(NSWindow*)window inAEMajorVersion:(int32_t)version;
- (void)suppressWindowAndStartFontActivationProcess:(NSWindow*)window
                                   inAEMajorVersion:(int32_t)version;
@end

static std::vector<id> frontSenders;

// Its name differs between versions of AppKit.
constexpr auto kKeyDown = static_cast<NSEventType>(10);

@interface DVAMacDialog : NSWindow
@end

@implementation DVAMacDialog
- (void)sendEvent:(NSEvent*)event {
  if ([event type] != kKeyDown) return [super sendEvent:event];
  const NSPoint place = [event locationInWindow];
  receivedKeys.push_back({[event type],
                          place.x,
                          place.y,
                          [event modifierFlags],
                          [event timestamp],
                          [event windowNumber],
                          [[event characters] UTF8String],
                          [[event charactersIgnoringModifiers] UTF8String],
                          static_cast<bool>([event isARepeat]),
                          [event keyCode]});
  onKey();
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

struct Pool {
  ~Pool() { [pool release]; }
  NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
};

NSWindow* Cocoa(const TestDialog& dialog) {
  return reinterpret_cast<NSWindow*>(dialog.window());
}

}  // namespace

TestDialog::TestDialog(const char* title, const char* kind) {
  const Pool pool;
  [NSApplication sharedApplication];
  NSWindow* window = [[objc_getClass(kind) alloc] initWithContentRect:NSMakeRect(0, 0, 200, 100)
                                                            styleMask:NSWindowStyleMaskTitled
                                                              backing:NSBackingStoreBuffered
                                                                defer:NO];
  [window setReleasedWhenClosed:NO];
  [window setTitle:[NSString stringWithUTF8String:title]];
  mWindow = reinterpret_cast<modal_window::Window*>(window);
}

TestDialog::~TestDialog() {
  const Pool pool;
  [Cocoa(*this) close];
  [Cocoa(*this) release];
}

int64_t TestDialog::number() const {
  return [Cocoa(*this) windowNumber];
}

void TestDialog::RunSession() const {
  const Pool pool;
  const NSModalSession session = [NSApp beginModalSessionForWindow:Cocoa(*this)];
  EXPECT_NE(session, nullptr);
  EXPECT_EQ([NSApp modalWindow], Cocoa(*this));
  EXPECT_TRUE([Cocoa(*this) isVisible]);
  [NSApp endModalSession:session];
}

void TestDialog::Hide() const {
  const Pool pool;
  [Cocoa(*this) orderOut:nil];
}

void RaisePlatformException() {
  [NSException raise:@"NoKeyWindow" format:@"no key window"];
}

namespace {

TEST_F(OverrideTest, OfExceptionsOnlyCocoasAreKeptBack) {
  ShowTitled("Open Project");
  onKey = [] { @throw @"not an exception"; };
  EXPECT_ANY_THROW(ShowTitled("Resolve Fonts"));
  EXPECT_FALSE(global_state.fontActivationInProgress);
}

TEST_F(OverrideTest, TheApplicationAnswersTheSameByItsMethods) {
  const Pool pool;
  NSWindow* open = Cocoa(Dialog("Open Project"));
  NSWindow* fonts = Cocoa(Dialog("Resolve Fonts"));
  EXPECT_TRUE([NSApp isThisTheOpenProjectDialog:open]);
  EXPECT_FALSE([NSApp isThisTheOpenProjectDialog:fonts]);
  EXPECT_TRUE([NSApp isMissingFontsWindow:fonts inAEMajorVersion:114]);
  EXPECT_FALSE([NSApp isMissingFontsWindow:fonts inAEMajorVersion:113]);
  EXPECT_TRUE([NSApp isMissingFontsWindow:Cocoa(Dialog("After Effects")) inAEMajorVersion:113]);
  [NSApp suppressWindowAndStartFontActivationProcess:fonts inAEMajorVersion:114];
  EXPECT_EQ(receivedKeys.size(), 1u);
  EXPECT_THAT(frontSenders, testing::Contains(NSApp));
  EXPECT_TRUE(global_state.fontActivationInProgress);
}

// Earlier versions of the plug-in send this message to reach the platform's implementation.
TEST_F(OverrideTest, AMessageToTheExchangedMethodReachesThePlatformPastLaterCopies) {
  const TestDialog& dialog = Dialog("Open Project");
  const auto send = [&] {
    const Pool pool;
    testing::internal::CaptureStdout();
    const NSModalSession session = [NSApp beginModalOverride:Cocoa(dialog)];
    EXPECT_EQ([NSApp modalWindow], Cocoa(dialog));
    [NSApp endModalSession:session];
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  };
  send();
  auto* const copy = LoadCopy();
  send();
  EXPECT_EQ(copy(fake_host.basicSuite(), 114, 0, 5, nullptr), 0);
  send();
}

// Each row: what is loaded after the neighbour or before it, and what is started first.
class NeighbourTest : public OverrideTest,
                      public testing::WithParamInterface<std::tuple<bool, bool>> {};

TEST_P(NeighbourTest, EachOverrideSeesADialogOnce) {
  const auto [neighbourLoadsFirst, neighbourStartsFirst] = GetParam();
  using Exchange = void (*)();
  const auto loadNeighbour = [] {
    return reinterpret_cast<Exchange>(dlsym(dlopen(NEIGHBOUR, RTLD_NOW | RTLD_LOCAL), "Exchange"));
  };
  Exchange exchange = neighbourLoadsFirst ? loadNeighbour() : nullptr;
  auto* const copy = LoadCopy();
  if (!exchange) exchange = loadNeighbour();
  if (neighbourStartsFirst) exchange();
  EXPECT_EQ(copy(fake_host.basicSuite(), 114, 0, 5, nullptr), 0);
  if (!neighbourStartsFirst) exchange();
  testing::internal::CaptureStdout();
  Show(Dialog("Open Project"));
  const std::string output = testing::internal::GetCapturedStdout();
  const auto count = [&](const std::string& line) {
    int found = 0;
    for (size_t at = 0; (at = output.find(line, at)) != std::string::npos; ++at) ++found;
    return found;
  };
  EXPECT_EQ(count("Saw a DVAMacDialog titled: Open Project\n"), 2) << output;
  EXPECT_EQ(count("The neighbour saw Open Project\n"), 1) << output;
}

INSTANTIATE_TEST_SUITE_P(Orders, NeighbourTest, testing::Combine(testing::Bool(), testing::Bool()));

}  // namespace
