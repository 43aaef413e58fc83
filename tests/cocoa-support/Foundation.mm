#import <Foundation/Foundation.h>
#include <dlfcn.h>

#include <cstdlib>

#include "CocoaFakes.h"

// Puts the user's library where macOS has it. GNUstep has it elsewhere.
extern "C" NSArray* NSSearchPathForDirectoriesInDomains(NSSearchPathDirectory directory,
                                                        NSSearchPathDomainMask domain,
                                                        BOOL expandTilde) {
  if (directory != NSLibraryDirectory || domain != NSUserDomainMask) {
    static const auto other = reinterpret_cast<decltype(&NSSearchPathForDirectoriesInDomains)>(
        dlsym(RTLD_NEXT, "NSSearchPathForDirectoriesInDomains"));
    return other(directory, domain, expandTilde);
  }
  if (cocoaFakes.failing.contains(__func__)) return nil;
  NSString* home = [NSString stringWithUTF8String:std::getenv("HOME")];
  return [NSArray arrayWithObject:[home stringByAppendingPathComponent:@"Library"]];
}
