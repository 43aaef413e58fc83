#include "GSystem.h"

// Each function asks the platform once, and keeps the answer in a static of its own.

bool GSystem::IsMacOSX() {
  static const uint32_t os = OSGetSystem();
  return os == kMacOSX;
}

bool GSystem::IsWindows() {
  static const uint32_t os = OSGetSystem();
  return os == kFirstWindows || os == kLastWindows;
}
