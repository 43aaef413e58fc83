#include "GSystem.h"

bool GSystem::IsMacOSX() {
  static const uint32_t os = OSGetSystem();
  return os == 0;
}

bool GSystem::IsWindows() {
  static const uint32_t os = OSGetSystem();
  return os == 1 || os == 2;
}
