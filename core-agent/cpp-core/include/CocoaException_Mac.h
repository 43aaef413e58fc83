#pragma once

#import <Foundation/Foundation.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Calls `function` with `context`. Returns the Cocoa exception that ended the call, autoreleased,
/// or nil. C++ exceptions pass. Either kind runs the C++ destructors on its way.
id RunCatchingCocoaException(void (*function)(void* context), void* context);

#ifdef __cplusplus
}
#endif
