#import <AppKit/AppKit.h>

#include "GScopedManagedMemory.h"
#include "GetPathToRunningProcess.h"

std::vector<std::string> GetRunningExecutables() {
  const GScopedManagedMemory scope;
  std::vector<std::string> executables;
  NSArray* applications = [[NSWorkspace sharedWorkspace] runningApplications];
  const NSUInteger count = [applications count];
  for (NSUInteger index = 0; index < count; ++index) {
    NSRunningApplication* application = [applications objectAtIndex:index];
    const char* executable = [[[application executableURL] path] UTF8String];
    if (executable) executables.emplace_back(executable);
  }
  return executables;
}

void GetUsersAppDataDirectory(std::string& directory) {
  const GScopedManagedMemory scope;
  NSArray* directories =
      NSSearchPathForDirectoriesInDomains(NSLibraryDirectory, NSUserDomainMask, YES);
  // `objectAtIndex:` would raise an exception inside the host.
  if ([directories count] == 0) return;
  const char* first = [[directories objectAtIndex:0] fileSystemRepresentation];
  if (first) directory = first;
}
