#import <Foundation/Foundation.h>

#include "CppCoreMacros.h"
#include "GScopedManagedMemory.h"

void GScopedManagedMemory::OSSetupManagedMemory() {
  [this] {
    uint32_t err = CoreErrorCodes::kSuccess;
    mOSManagedMemory = [[NSAutoreleasePool alloc] init];
    CORE_CHECK_NOT_NULL(mOSManagedMemory, "Miscellaneous");
    return err;
  }();
}

void GScopedManagedMemory::OSTearDownManagedMemory() {
  [static_cast<NSAutoreleasePool*>(mOSManagedMemory) release];
}
