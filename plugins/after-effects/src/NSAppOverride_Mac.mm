#import <AppKit/AppKit.h>
#import <objc/runtime.h>

#include "CocoaException.h"
#include "ModalWindow.h"
#include "NSAppOverride.h"

// What the plug-in adds to the application. The decisions are the portable part's; as methods they
// can be asked for by whoever has only the application.
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

id sOpenProjectDialog = nil;  // weak

NSWindow* CocoaWindow(ModalWindow* window) {
  return reinterpret_cast<NSWindow*>(window);
}

ModalWindow* PortableWindow(id window) {
  return reinterpret_cast<ModalWindow*>(window);
}

}  // namespace

@implementation NSApplication (Override)

- (NSModalSession)beginModalOverride:(NSWindow*)window {
  considerModalWindow(PortableWindow(window));
  // The implementations are exchanged: this is the platform's.
  return [self beginModalOverride:window];
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
  // Its modal session begins all the same, also when it goes as it closes.
  [[window retain] autorelease];
  const id exception = CocoaExceptionRaisedBy(
      [](void* context) {
        NSWindow* target = static_cast<NSWindow*>(context);
        NSEvent* escape = [NSApp escapeKeyEventForWindow:target];
        if (escape) [target sendEvent:escape];
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
  const Class application = [NSApplication class];
  const Method begin = class_getInstanceMethod(application, @selector(beginModalSessionForWindow:));
  const Method override = class_getInstanceMethod(application, @selector(beginModalOverride:));
  if (!begin || !override) return;
  method_exchangeImplementations(begin, override);
}

bool isKindOfClass(ModalWindow* window, const char* className) {
  NSString* name = [NSString stringWithUTF8String:className];
  return name && [CocoaWindow(window) isKindOfClass:NSClassFromString(name)];
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
