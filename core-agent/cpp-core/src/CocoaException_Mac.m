#include "CocoaException_Mac.h"

// Plain Objective-C, because not every compiler's C++ runtime can match the class of a Cocoa
// exception in a handler.
id RunCatchingCocoaException(void (*function)(void* context), void* context) {
  @try {
    function(context);
  } @catch (id exception) {
    // A pool on the way may have released it, and the runtime releases it here.
    return [[exception retain] autorelease];
  }
  return nil;
}
