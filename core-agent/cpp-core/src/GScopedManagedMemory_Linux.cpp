#include "GScopedManagedMemory.h"

// Linux has no autoreleased objects, so the scope holds nothing.

void GScopedManagedMemory::OSSetupManagedMemory() {}

void GScopedManagedMemory::OSTearDownManagedMemory() {}
