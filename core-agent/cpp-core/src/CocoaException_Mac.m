#include "CocoaException_Mac.h"

// In plain Objective-C, because a C++ handler can't catch a Cocoa exception by its class with every
// compiler's runtime.
id RunCatchingCocoaException(void (*function)(void* context), void* context) {
  @try {
    function(context);
  } @catch (id exception) {
    // The runtime releases the exception at the end of this block, and its pool may be gone.
    return [[exception retain] autorelease];
  }
  return nil;
}
