#import <AppKit/AppKit.h>
#import <objc/runtime.h>

#include <cstdlib>

#include "CocoaException.h"
#include "ModalWindow.h"
#include "NSAppOverride.h"

// What the plug-in adds to the application. The decisions are the portable part's.
@interface NSApplication (Override)
- (NSModalSession)beginModalOverride:(NSWindow*)window;
- (bool)isThisTheOpenProjectDialog:(NSWindow*)window;
- (bool)isMissingFontsWindow:(NSWindow*)window inAEMajorVersion:(int32_t)version;
- (void)suppressWindowAndStartFontActivationProcess:(NSWindow*)window
                                   inAEMajorVersion:(int32_t)version;
- (void)sendEscapeKeyToWindow:(NSWindow*)window;
- (NSEvent*)escapeKeyEventForWindow:(NSWindow*)window;
@end

namespace {

// By number, because its name differs between versions of AppKit.
constexpr auto kKeyDown = static_cast<NSEventType>(10);
constexpr unsigned short kEscapeKeyCode = 0x35;

using BeginModalSession = NSModalSession (*)(id self, SEL selector, NSWindow* window);

// What the override calls when it is done: the platform's implementation, or the override of a
// plug-in that came earlier.
BeginModalSession sBeginModalSession = nullptr;

id sOpenProjectDialog = nil;  // weak

NSWindow* CocoaWindow(ModalWindow* window) {
  return reinterpret_cast<NSWindow*>(window);
}

ModalWindow* PortableWindow(id window) {
  return reinterpret_cast<ModalWindow*>(window);
}

// What `beginModalOverride:` ran before this module was loaded, or null. Another version of the
// plug-in may have exchanged a method of that name, which this module's hides, and send it to reach
// the platform's implementation.
IMP HiddenOverride() {
  const SEL name = @selector(beginModalOverride:);
  const Class application = [NSApplication class];
  const Method visible = class_getInstanceMethod(application, name);
  IMP hidden = nullptr;
  unsigned int count = 0;
  Method* const methods = class_copyMethodList(application, &count);
  for (unsigned int index = 0; index < count && !hidden; ++index) {
    if (methods[index] == visible || !sel_isEqual(method_getName(methods[index]), name)) continue;
    hidden = method_getImplementation(methods[index]);
  }
  std::free(methods);
  return hidden;
}

// A function, since a message could reach the method of another copy of the plug-in.
NSModalSession BeginModalOverride(id self, SEL, NSWindow* window) {
  considerModalWindow(PortableWindow(window));
  const auto next = sBeginModalSession ? sBeginModalSession
                                       : reinterpret_cast<BeginModalSession>(HiddenOverride());
  return next(self, @selector(beginModalSessionForWindow:), window);
}

}  // namespace

@implementation NSApplication (Override)

- (NSModalSession)beginModalOverride:(NSWindow*)window {
  return BeginModalOverride(self, _cmd, window);
}

- (bool)isThisTheOpenProjectDialog:(NSWindow*)window {
  return ::isThisTheOpenProjectDialog(PortableWindow(window));
}

- (bool)isMissingFontsWindow:(NSWindow*)window inAEMajorVersion:(int32_t)version {
  return ::isMissingFontsWindow(PortableWindow(window), version);
}

- (void)suppressWindowAndStartFontActivationProcess:(NSWindow*)window
                                   inAEMajorVersion:(int32_t)version {
  ::suppressWindowAndStartFontActivationProcess(PortableWindow(window), version);
}

- (void)sendEscapeKeyToWindow:(NSWindow*)window {
  // Keep the window alive: its modal session still begins, even if Escape closes and releases it.
  [[window retain] autorelease];
  const id exception = CocoaExceptionRaisedBy(
      [](void* context) {
        NSWindow* target = static_cast<NSWindow*>(context);
        [target sendEvent:[NSApp escapeKeyEventForWindow:target]];
      },
      window);
  if (!exception) return;
  if (![exception isKindOfClass:[NSException class]]) @throw exception;
  NSLog(@"Exception when sendEscapeKeyToWindow:  exception=%@", exception);
}

- (NSEvent*)escapeKeyEventForWindow:(NSWindow*)window {
  NSString* escape = @"\x1B";
  return [NSEvent keyEventWithType:kKeyDown
                          location:NSZeroPoint
                     modifierFlags:0
                         timestamp:0
                      windowNumber:[window windowNumber]
                           context:nil
                        characters:escape
       charactersIgnoringModifiers:escape
                         isARepeat:NO
                           keyCode:kEscapeKeyCode];
}

@end

void SwizzleNSAppBeginModal() {
  // A second exchange would undo the first.
  if (sBeginModalSession) return;
  const Class application = [NSApplication class];
  const Method begin = class_getInstanceMethod(application, @selector(beginModalSessionForWindow:));
  const Method override = class_getInstanceMethod(application, @selector(beginModalOverride:));
  const IMP hidden = HiddenOverride();
  sBeginModalSession = reinterpret_cast<BeginModalSession>(method_getImplementation(begin));
  // Another copy that was loaded later has its own method in front.
  method_setImplementation(override, reinterpret_cast<IMP>(BeginModalOverride));
  method_exchangeImplementations(begin, override);
  if (hidden) method_setImplementation(override, hidden);
}

bool isKindOfClass(ModalWindow* window, const char* className) {
  const Class kind = NSClassFromString([NSString stringWithUTF8String:className]);
  return [CocoaWindow(window) isKindOfClass:kind];
}

std::string titleOf(ModalWindow* window) {
  const char* title = [[CocoaWindow(window) title] UTF8String];
  return title ? title : "";
}

bool isVisible(ModalWindow* window) {
  return [CocoaWindow(window) isVisible];
}

void makeKeyAndOrderFront(ModalWindow* window) {
  [CocoaWindow(window) makeKeyAndOrderFront:NSApp];
}

void sendEscapeKeyToWindow(ModalWindow* window) {
  [NSApp sendEscapeKeyToWindow:CocoaWindow(window)];
}

void setOpenProjectDialog(ModalWindow* window) {
  objc_storeWeak(&sOpenProjectDialog, CocoaWindow(window));
}

ModalWindow* openProjectDialog() {
  return PortableWindow(objc_loadWeak(&sOpenProjectDialog));
}
