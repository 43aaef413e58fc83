#import <AppKit/AppKit.h>
#import <objc/runtime.h>

#include "CocoaException_Mac.h"
#include "DebugUtils.h"
#include "NSAppOverride.h"
#include "NSAppOverridePlatform.h"

@interface NSApplication (Override)
- (bool)isThisTheOpenProjectDialog:(NSWindow*)window;
- (bool)isMissingFontsWindow:(NSWindow*)window inAEMajorVersion:(int32_t)version;
- (void)suppressWindowAndStartFontActivationProcess:(NSWindow*)window
                                   inAEMajorVersion:(int32_t)version;
- (void)sendEscapeKeyToWindow:(NSWindow*)window;
- (NSEvent*)escapeKeyEventForWindow:(NSWindow*)window;
@end

namespace {

// `NSEventTypeKeyDown`, whose name differs between versions of AppKit.
constexpr auto kKeyDown = static_cast<NSEventType>(10);

using BeginModalSession = NSModalSession (*)(id self, SEL selector, NSWindow* window);

// The implementation before ours: the platform's, or another plug-in's override.
BeginModalSession sNextBeginModalSession = nullptr;

id sOpenProjectDialog = nil;  // weak

NSWindow* cocoaWindow(modal_window::Window* window) {
  return reinterpret_cast<NSWindow*>(window);
}

modal_window::Window* portableWindow(id window) {
  return reinterpret_cast<modal_window::Window*>(window);
}

NSModalSession beginModalOverride(id self, SEL selector, NSWindow* window) {
  modal_window::handleModalWindow(portableWindow(window));
  return sNextBeginModalSession(self, selector, window);
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
  // Keep the window alive: its modal session still begins if Escape closes and releases it.
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
  if (TraceIsOn()) modal_window::traceFailedEscape([[exception description] UTF8String]);
}

}  // namespace

// These only forward: the system's callers know them by name.
@implementation NSApplication (Override)

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
  if (sNextBeginModalSession) return;
  const Class application = [NSApplication class];
  const Method begin = class_getInstanceMethod(application, @selector(beginModalSessionForWindow:));
  if (!begin) return;
  const IMP next = method_setImplementation(begin, reinterpret_cast<IMP>(beginModalOverride));
  sNextBeginModalSession = reinterpret_cast<BeginModalSession>(next);
  // Leaves the method alone if another copy, an earlier version or a neighbour has added it. They
  // send the message to reach the platform's implementation.
  class_addMethod(application, @selector(beginModalOverride:), next, method_getTypeEncoding(begin));
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
