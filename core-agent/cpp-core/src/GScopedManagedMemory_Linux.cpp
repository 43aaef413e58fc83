#include "GScopedManagedMemory.h"

// Nothing is freed by itself here, so the scope never holds anything.

void GScopedManagedMemory::OSSetupManagedMemory() {}

void GScopedManagedMemory::OSTearDownManagedMemory() {}
