#pragma once

#include <cstdint>

/// What differs between operating systems and has no other home.
class GSystem {
 public:
  // The numbers of systems. Windows has two.
  static constexpr uint32_t kMacOSX = 0;
  static constexpr uint32_t kFirstWindows = 1;
  static constexpr uint32_t kLastWindows = 2;
  static constexpr uint32_t kLinux = 3;

  /// Returns the number of this system.
  static uint32_t OSGetSystem();

  /// Whether this is macOS; the number never changes. Any thread.
  static bool IsMacOSX();
  /// Whether this is Windows. Any thread.
  static bool IsWindows();

  /// Blocks the calling thread. The microseconds are counted in 32 bits, so the longest sleep is
  /// 4294967 milliseconds.
  static void OSSleep(unsigned int milliseconds);
};
