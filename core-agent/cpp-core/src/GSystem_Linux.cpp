#include "GSystem.h"

uint32_t GSystem::OSGetSystem() {
  return kLinux;
}
