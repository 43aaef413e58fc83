#pragma once

#import <Foundation/Foundation.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Runs `function` with `context`. Returns the Cocoa exception that ended it, autoreleased, or nil.
///
/// C++ exceptions pass. C++ destructors on the way run for both kinds.
id RunCatchingCocoaException(void (*function)(void* context), void* context);

#ifdef __cplusplus
}
#endif
