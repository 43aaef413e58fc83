#pragma once

#include <Availability.h>
#import <Foundation/Foundation.h>

#define APPKIT_EXTERN OBJC_EXPORT

#pragma clang assume_nonnull begin

@class NSEvent, NSGraphicsContext, NSWindow;

typedef struct _NSModalSession* NSModalSession;

typedef NS_OPTIONS(NSUInteger, NSApplicationActivationOptions) {
  NSApplicationActivateAllWindows = 1 << 0,
  NSApplicationActivateIgnoringOtherApps API_DEPRECATED(
      "ignoringOtherApps is deprecated in macOS 14 and will have no effect.",
      macos(10.6, 14.0)) = 1 << 1,
};
typedef NS_OPTIONS(NSUInteger, NSEventModifierFlags) { NSEventModifierFlagShift = 1 << 17 };
typedef NS_ENUM(NSUInteger, NSEventType) { NSEventTypeKeyDown = 10 };

@interface NSResponder : NSObject
@end

@interface NSApplication : NSResponder
@property(class, readonly, strong) __kindof NSApplication* sharedApplication;
@property(nullable, readonly, assign) NSWindow* modalWindow;
- (void)endModalSession:(NSModalSession)session;
- (NSModalSession)beginModalSessionForWindow:(NSWindow*)window;
@end

APPKIT_EXTERN __kindof NSApplication* _Null_unspecified NSApp;

typedef NS_ENUM(NSUInteger, NSBackingStoreType) { NSBackingStoreBuffered = 2 };
typedef NS_OPTIONS(NSUInteger, NSWindowStyleMask) { NSWindowStyleMaskTitled = 1 << 0 };

@interface NSWindow : NSResponder
- (instancetype)initWithContentRect:(NSRect)contentRect
                          styleMask:(NSWindowStyleMask)style
                            backing:(NSBackingStoreType)backingStoreType
                              defer:(BOOL)flag;
@property(getter=isReleasedWhenClosed) BOOL releasedWhenClosed;
- (void)close;
- (void)orderOut:(nullable id)sender;
@property(copy) NSString* title;
@property(getter=isVisible, readonly) BOOL visible;
@property(readonly) NSInteger windowNumber;
- (void)makeKeyAndOrderFront:(nullable id)sender;
- (void)sendEvent:(NSEvent*)event;
@end

@interface NSPanel : NSWindow
@end

@interface NSEvent : NSObject
@property(readonly) NSEventType type;
@property(readonly) NSEventModifierFlags modifierFlags;
@property(readonly) NSTimeInterval timestamp;
@property(readonly) NSInteger windowNumber;
@property(readonly) NSPoint locationInWindow;
@property(nullable, readonly, copy) NSString* characters;
@property(nullable, readonly, copy) NSString* charactersIgnoringModifiers;
@property(getter=isARepeat, readonly) BOOL ARepeat;
@property(readonly) unsigned short keyCode;
+ (nullable NSEvent*)keyEventWithType:(NSEventType)type
                             location:(NSPoint)location
                        modifierFlags:(NSEventModifierFlags)flags
                            timestamp:(NSTimeInterval)time
                         windowNumber:(NSInteger)window
                              context:(nullable NSGraphicsContext*)unused
                           characters:(NSString*)characters
          charactersIgnoringModifiers:(NSString*)charactersIgnoringModifiers
                            isARepeat:(BOOL)repeat
                              keyCode:(unsigned short)code;
@end

@interface NSRunningApplication : NSObject
@property(readonly) pid_t processIdentifier;
@property(nullable, readonly, copy) NSURL* executableURL;
+ (NSArray<NSRunningApplication*>*)runningApplicationsWithBundleIdentifier:(NSString*)identifier;
+ (nullable instancetype)runningApplicationWithProcessIdentifier:(pid_t)pid;
- (BOOL)activateWithOptions:(NSApplicationActivationOptions)options;
@end

@interface NSWorkspace : NSObject
@property(class, readonly, strong) NSWorkspace* sharedWorkspace;
@property(readonly, copy) NSArray<NSRunningApplication*>* runningApplications;
@property(nullable, readonly, strong) NSRunningApplication* frontmostApplication;
@end

#pragma clang assume_nonnull end
