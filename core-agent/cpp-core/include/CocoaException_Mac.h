#pragma once

#import <Foundation/Foundation.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Runs `function` with `context`, and returns the object that was thrown in it, or nil when it
/// returned. The object is autoreleased.
///
/// Only Cocoa's exceptions end here: those of C++ pass, and the destructors on the way run for
/// both.
id CocoaExceptionRaisedBy(void (*function)(void* context), void* context);

#ifdef __cplusplus
}
#endif
