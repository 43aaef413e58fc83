#import <AppKit/AppKit.h>
#import <objc/runtime.h>

#include <cstdlib>

#include "CocoaException_Mac.h"
#include "ModalWindow.h"
#include "NSAppOverride.h"

// What the plug-in adds to the application.
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

// Its name differs between versions of AppKit.
constexpr auto kKeyDown = static_cast<NSEventType>(10);

using BeginModalSession = NSModalSession (*)(id self, SEL selector, NSWindow* window);

// What the override goes on to: the platform's implementation, or another plug-in's override of it.
BeginModalSession sBeginModalSession = nullptr;

id sOpenProjectDialog = nil;  // weak

NSWindow* CocoaWindow(modal_window::Window* window) {
  return reinterpret_cast<NSWindow*>(window);
}

modal_window::Window* PortableWindow(id window) {
  return reinterpret_cast<modal_window::Window*>(window);
}

// The `beginModalOverride:` of another copy or version of the plug-in, which the one here hides;
// null without one. Earlier versions send that message to reach the platform's implementation.
IMP HiddenOverride() {
  const SEL name = @selector(beginModalOverride:);
  const Class application = [NSApplication class];
  const Method visible = class_getInstanceMethod(application, name);
  IMP hidden = nullptr;
  unsigned int count = 0;
  Method* const methods = class_copyMethodList(application, &count);
  for (unsigned int index = 0; methods && index < count && !hidden; ++index) {
    if (methods[index] == visible || !sel_isEqual(method_getName(methods[index]), name)) continue;
    hidden = method_getImplementation(methods[index]);
  }
  std::free(methods);
  return hidden;
}

// A function, because the method may be hidden by another copy's.
NSModalSession BeginModalOverride(id self, SEL, NSWindow* window) {
  modal_window::recordOrDismiss(PortableWindow(window));
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
  return modal_window::isThisTheOpenProjectDialog(PortableWindow(window));
}

- (bool)isMissingFontsWindow:(NSWindow*)window inAEMajorVersion:(int32_t)version {
  return modal_window::isMissingFontsWindow(PortableWindow(window), version);
}

- (void)suppressWindowAndStartFontActivationProcess:(NSWindow*)window
                                   inAEMajorVersion:(int32_t)version {
  modal_window::suppressWindowAndStartFontActivationProcess(PortableWindow(window), version);
}

- (void)sendEscapeKeyToWindow:(NSWindow*)window {
  // Keep the window alive: its modal session still begins, even if Escape closes and releases it.
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
  NSLog(@"%s%@", modal_window::kEscapeFailed, exception);
}

- (NSEvent*)escapeKeyEventForWindow:(NSWindow*)window {
  NSString* escape = [NSString stringWithUTF8String:modal_window::kEscapeCharacters];
  if (!escape) return nil;
  return [NSEvent keyEventWithType:kKeyDown
                          location:NSZeroPoint
                     modifierFlags:0
                         timestamp:0
                      windowNumber:[window windowNumber]
                           context:nil
                        characters:escape
       charactersIgnoringModifiers:escape
                         isARepeat:NO
                           keyCode:modal_window::kEscapeKeyCode];
}

@end

void SwizzleNSAppBeginModal() {
  // A second time would make the override its own successor.
  if (sBeginModalSession) return;
  const Class application = [NSApplication class];
  const Method begin = class_getInstanceMethod(application, @selector(beginModalSessionForWindow:));
  const Method override = class_getInstanceMethod(application, @selector(beginModalOverride:));
  if (!begin || !override) return;
  const IMP hidden = HiddenOverride();
  sBeginModalSession = reinterpret_cast<BeginModalSession>(method_getImplementation(begin));
  // The method may be that of a copy that was loaded later.
  method_setImplementation(override, reinterpret_cast<IMP>(BeginModalOverride));
  method_exchangeImplementations(begin, override);
  if (hidden) method_setImplementation(override, hidden);
}

namespace modal_window {

bool isKindOfClass(Window* window, const char* className) {
  NSString* name = [NSString stringWithUTF8String:className];
  return name && [CocoaWindow(window) isKindOfClass:NSClassFromString(name)];
}

std::string titleOf(Window* window) {
  const char* title = [[CocoaWindow(window) title] UTF8String];
  return title ? title : "";
}

bool isVisible(Window* window) {
  return [CocoaWindow(window) isVisible];
}

void makeKeyAndOrderFront(Window* window) {
  [CocoaWindow(window) makeKeyAndOrderFront:NSApp];
}

void sendEscapeKeyToWindow(Window* window) {
  [NSApp sendEscapeKeyToWindow:CocoaWindow(window)];
}

void setOpenProjectDialog(Window* window) {
  objc_storeWeak(&sOpenProjectDialog, CocoaWindow(window));
}

Window* openProjectDialog() {
  return PortableWindow(objc_loadWeak(&sOpenProjectDialog));
}

}  // namespace modal_window
