#import <AppKit/AppKit.h>
#import <objc/runtime.h>

#include <cstdio>

// Another plug-in with the selectors of ours, which exchanges the methods and sends the message.
@interface NSApplication (Neighbour)
- (NSModalSession)beginModalOverride:(NSWindow*)window;
@end

@implementation NSApplication (Neighbour)

- (NSModalSession)beginModalOverride:(NSWindow*)window {
  std::printf("The neighbour saw %s\n", [[window title] UTF8String]);
  return [self beginModalOverride:window];
}

@end

extern "C" [[gnu::visibility("default")]] void Exchange() {
  const Class application = [NSApplication class];
  method_exchangeImplementations(
      class_getInstanceMethod(application, @selector(beginModalSessionForWindow:)),
      class_getInstanceMethod(application, @selector(beginModalOverride:)));
}
