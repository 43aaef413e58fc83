#import <AppKit/AppKit.h>

#include "BackgroundForegroundSwitcherPlatform.h"
#include "GScopedManagedMemory.h"

namespace {

// Later versions of macOS deprecate the second option's name.
constexpr auto kAllWindowsIgnoringOtherApplications =
    static_cast<NSApplicationActivationOptions>(3);

}  // namespace

int GetFrontProcessID(int& pid) {
  const GScopedManagedMemory scope;
  NSRunningApplication* front = [[NSWorkspace sharedWorkspace] frontmostApplication];
  if (!front) return kNoFrontApplication;
  pid = [front processIdentifier];
  return 0;
}

int GetProcessID(const char* bundle_id, int& pid) {
  const GScopedManagedMemory scope;
  NSString* identifier = [NSString stringWithUTF8String:bundle_id];
  if (!identifier) return kNoSuchApplication;
  NSRunningApplication* first =
      [[NSRunningApplication runningApplicationsWithBundleIdentifier:identifier] firstObject];
  if (!first) return kNoSuchApplication;
  pid = [first processIdentifier];
  return 0;
}

void SetFrontApplication(int pid) {
  TraceActivation(pid, [[NSRunningApplication runningApplicationWithProcessIdentifier:pid]
                           activateWithOptions:kAllWindowsIgnoringOtherApplications]);
}
