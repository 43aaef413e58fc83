#pragma once

#include <cstdint>

/// Identifies the operating system, and sleeps.
class GSystem {
 public:
  // The numbers of systems. Windows has two.
  enum : uint32_t { kMacOSX = 0, kFirstWindows = 1, kLastWindows = 2, kLinux = 3 };

  /// Returns the number of this system.
  static uint32_t OSGetSystem();

  /// Returns whether this is macOS. Any thread.
  static bool IsMacOSX();
  /// Returns whether this is Windows. Any thread.
  static bool IsWindows();

  /// Blocks the calling thread. Microseconds are counted in 32 bits, so the longest sleep is
  /// 4294967 milliseconds.
  static void OSSleep(unsigned int milliseconds);
};
