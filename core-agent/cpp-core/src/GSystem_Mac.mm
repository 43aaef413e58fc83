// The Cocoa half. What POSIX is enough for is in GSystem_Mac.cpp.
#include "GSystem.h"

uint32_t GSystem::OSGetSystem() {
  return kMacOSX;
}
