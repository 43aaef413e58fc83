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
// The category's `beginModalOverride:`, which that of a copy loaded later hides.
Method sOwnMethod = nullptr;

id sOpenProjectDialog = nil;  // weak

NSWindow* cocoaWindow(modal_window::Window* window) {
  return reinterpret_cast<NSWindow*>(window);
}

modal_window::Window* portableWindow(id window) {
  return reinterpret_cast<modal_window::Window*>(window);
}

// The `beginModalOverride:` of another copy or version of the plug-in that the one here hides; null
// without one. Earlier versions send that message to reach the platform's implementation.
BeginModalSession hiddenOverride() {
  const SEL name = @selector(beginModalOverride:);
  IMP hidden = nullptr;
  bool past = false;
  unsigned int count = 0;
  Method* const methods = class_copyMethodList([NSApplication class], &count);
  for (unsigned int index = 0; methods && index < count && !hidden; ++index) {
    if (past && sel_isEqual(method_getName(methods[index]), name)) {
      hidden = method_getImplementation(methods[index]);
    }
    past = past || methods[index] == sOwnMethod;
  }
  std::free(methods);
  return reinterpret_cast<BeginModalSession>(hidden);
}

// Functions, because a copy loaded later hides the category's methods.

NSModalSession beginModalOverride(id self, SEL selector, NSWindow* window) {
  modal_window::recordOrDismiss(portableWindow(window));
  return sBeginModalSession(self, selector, window);
}

NSEvent* escapeKeyEvent(NSWindow* window) {
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

void sendEscapeKey(NSWindow* window) {
  // Keep the window alive: its modal session still begins, even if Escape closes and releases it.
  [[window retain] autorelease];
  const id exception = RunCatchingCocoaException(
      [](void* context) {
        NSWindow* target = static_cast<NSWindow*>(context);
        NSEvent* escape = escapeKeyEvent(target);
        if (escape) [target sendEvent:escape];
      },
      window);
  if (!exception) return;
  if (![exception isKindOfClass:[NSException class]]) @throw exception;
  NSLog(@"%s%@", modal_window::kEscapeFailed, exception);
}

}  // namespace

@implementation NSApplication (Override)

+ (void)load {
  // Sends no message: it would set the application class up before the host does.
  sOwnMethod =
      class_getInstanceMethod(objc_getClass("NSApplication"), @selector(beginModalOverride:));
}

// Begins the session without the override, as an exchange of the two methods would have it.
- (NSModalSession)beginModalOverride:(NSWindow*)window {
  BeginModalSession next = hiddenOverride();
  if (!next) next = sBeginModalSession;
  return next ? next(self, @selector(beginModalSessionForWindow:), window) : nullptr;
}

- (bool)isThisTheOpenProjectDialog:(NSWindow*)window {
  return modal_window::isThisTheOpenProjectDialog(portableWindow(window));
}

- (bool)isMissingFontsWindow:(NSWindow*)window inAEMajorVersion:(int32_t)version {
  return modal_window::isMissingFontsWindow(portableWindow(window), version);
}

- (void)suppressWindowAndStartFontActivationProcess:(NSWindow*)window
                                   inAEMajorVersion:(int32_t)version {
  modal_window::suppressWindowAndStartFontActivationProcess(portableWindow(window), version);
}

- (void)sendEscapeKeyToWindow:(NSWindow*)window {
  sendEscapeKey(window);
}

- (NSEvent*)escapeKeyEventForWindow:(NSWindow*)window {
  return escapeKeyEvent(window);
}

@end

void SwizzleNSAppBeginModal() {
  // A second time would make the override its own successor.
  if (sBeginModalSession) return;
  const Method begin =
      class_getInstanceMethod([NSApplication class], @selector(beginModalSessionForWindow:));
  if (!begin) return;
  sBeginModalSession = reinterpret_cast<BeginModalSession>(
      method_setImplementation(begin, reinterpret_cast<IMP>(beginModalOverride)));
}

namespace modal_window {

bool isKindOfClass(Window* window, const char* className) {
  NSString* name = [NSString stringWithUTF8String:className];
  return name && [cocoaWindow(window) isKindOfClass:NSClassFromString(name)];
}

std::string classNameOf(Window* window) {
  return object_getClassName(cocoaWindow(window));
}

std::string titleOf(Window* window) {
  const char* title = [[cocoaWindow(window) title] UTF8String];
  return title ? title : "";
}

bool isVisible(Window* window) {
  return [cocoaWindow(window) isVisible];
}

void makeKeyAndOrderFront(Window* window) {
  [cocoaWindow(window) makeKeyAndOrderFront:NSApp];
}

void sendEscapeKeyToWindow(Window* window) {
  sendEscapeKey(cocoaWindow(window));
}

void setOpenProjectDialog(Window* window) {
  objc_storeWeak(&sOpenProjectDialog, cocoaWindow(window));
}

Window* openProjectDialog() {
  return portableWindow(objc_loadWeak(&sOpenProjectDialog));
}

bool isOverrideInPlace() {
  // Asks the object: a subclass of the host's may have a method of its own.
  return [NSApp methodForSelector:@selector(beginModalSessionForWindow:)] ==
         reinterpret_cast<IMP>(beginModalOverride);
}

}  // namespace modal_window
