#include "GScopedManagedMemory.h"

GScopedManagedMemory::GScopedManagedMemory() : mOSManagedMemory(nullptr) {
  OSSetupManagedMemory();
}

GScopedManagedMemory::~GScopedManagedMemory() {
  OSTearDownManagedMemory();
}
