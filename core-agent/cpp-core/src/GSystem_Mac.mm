// The part of the macOS half that only macOS builds. The other part is in GSystem_Mac.cpp.
#include "GSystem.h"

uint32_t GSystem::OSGetSystem() {
  return kMacOSX;
}
