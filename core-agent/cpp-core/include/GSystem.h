#pragma once

#include <cstdint>

/// What differs between operating systems and has no other home.
class GSystem {
 public:
  /// The number of this system: 0 on macOS, 1 or 2 on Windows, 3 on Linux.
  static uint32_t OSGetSystem();

  /// Whether this is macOS; the number never changes. Any thread.
  static bool IsMacOSX();
  /// Whether this is Windows. Any thread.
  static bool IsWindows();

  /// Blocks the calling thread. The microseconds are counted in 32 bits, so the longest sleep is
  /// 4294967 milliseconds.
  static void OSSleep(unsigned int milliseconds);
};
