#include "FakeWorkspace.h"

#import <AppKit/AppKit.h>

#include "ReplacedMethod.h"

FakeWorkspace fakeWorkspace;

// An application with AppKit's operations that are in use.
@interface ListedApplication : NSObject {
  const FakeApplication* mApplication;
}
@end

@implementation ListedApplication

- (id)initWithApplication:(const FakeApplication&)application {
  if ((self = [super init])) mApplication = &application;
  return self;
}

- (pid_t)processIdentifier {
  return mApplication->processIdentifier;
}

- (NSURL*)executableURL {
  if (!mApplication->executable) return nil;
  return [NSURL fileURLWithPath:[NSString stringWithUTF8String:mApplication->executable->c_str()]];
}

- (BOOL)activateWithOptions:(NSApplicationActivationOptions)options {
  fakeWorkspace.activated.emplace_back(mApplication->processIdentifier, options);
  return YES;
}

@end

namespace {

template <class Predicate>
NSArray* Listed(Predicate predicate) {
  NSMutableArray* listed = [NSMutableArray array];
  for (const FakeApplication& application : fakeWorkspace.applications) {
    if (!predicate(application)) continue;
    ListedApplication* object = [[ListedApplication alloc] initWithApplication:application];
    [listed addObject:[object autorelease]];
  }
  return listed;
}

NSArray* RunningApplications(id, SEL) {
  return Listed([](const FakeApplication&) { return true; });
}

NSArray* WithBundleIdentifier(id, SEL, NSString* identifier) {
  const std::string wanted = [identifier UTF8String];
  return Listed([&](const FakeApplication& entry) { return entry.bundleIdentifier == wanted; });
}

id WithProcessIdentifier(id, SEL, pid_t pid) {
  return [Listed([&](const FakeApplication& entry) { return entry.processIdentifier == pid; })
      firstObject];
}

id FrontmostApplication(id self, SEL selector) {
  return WithProcessIdentifier(self, selector, fakeWorkspace.front);
}

id SharedWorkspace(id, SEL) {
  static const id workspace = NSAllocateObject(objc_getClass("NSWorkspace"), 0, nullptr);
  return workspace;
}

void Nothing(id, SEL) {}

Class ClassOf(const char* name) {
  return object_getClass(objc_getClass(name));
}

// Replaced at load: at its first message AppKit's own would start a daemon and write to the user's
// home.
const ReplacedMethod replaced[] = {
    {ClassOf("NSWorkspace"), @selector(initialize), Nothing},
    {ClassOf("NSWorkspace"), @selector(sharedWorkspace), SharedWorkspace},
    {objc_getClass("NSWorkspace"), @selector(runningApplications), RunningApplications},
    {objc_getClass("NSWorkspace"), @selector(frontmostApplication), FrontmostApplication},
    {ClassOf("NSRunningApplication"), @selector(runningApplicationsWithBundleIdentifier:),
     WithBundleIdentifier},
    {ClassOf("NSRunningApplication"), @selector(runningApplicationWithProcessIdentifier:),
     WithProcessIdentifier}};

}  // namespace
