#include "GSystem.h"

bool GSystem::IsMacOSX() {
  static const uint32_t os = OSGetSystem();
  return os == kMacOSX;
}

bool GSystem::IsWindows() {
  static const uint32_t os = OSGetSystem();
  return os == kFirstWindows || os == kLastWindows;
}
