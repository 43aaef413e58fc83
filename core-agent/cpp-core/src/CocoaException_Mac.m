#include "CocoaException_Mac.h"

// Plain Objective-C, because not every compiler's C++ runtime can match the class of a Cocoa
// exception in a handler.
id CocoaExceptionRaisedBy(void (*function)(void* context), void* context) {
  @try {
    function(context);
  } @catch (id exception) {
    // A scope on the way may have released it already, and the runtime's own hold ends here.
    return [[exception retain] autorelease];
  }
  return nil;
}
