#include "GScopedManagedMemory.h"

// Linux has no autoreleased objects.

void GScopedManagedMemory::OSSetupManagedMemory() {}

void GScopedManagedMemory::OSTearDownManagedMemory() {}
