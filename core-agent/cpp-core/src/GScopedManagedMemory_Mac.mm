#import <Foundation/Foundation.h>

#include "CppCoreMacros.h"
#include "GScopedManagedMemory.h"

namespace {

uint32_t OpenPool(void*& mOSManagedMemory) {
  uint32_t err = CoreErrorCodes::kSuccess;
  mOSManagedMemory = [[NSAutoreleasePool alloc] init];
  CORE_CHECK_NOT_NULL(mOSManagedMemory, "Miscellaneous");
  return err;
}

}  // namespace

void GScopedManagedMemory::OSSetupManagedMemory() {
  OpenPool(mOSManagedMemory);
}

void GScopedManagedMemory::OSTearDownManagedMemory() {
  [static_cast<NSAutoreleasePool*>(mOSManagedMemory) release];
}
