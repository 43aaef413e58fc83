#import <Foundation/Foundation.h>
#include <dlfcn.h>

#include <cstdlib>

#include "CocoaFakes.h"

// The user's library lies elsewhere by GNUstep's layout; here it lies where macOS has it.
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
