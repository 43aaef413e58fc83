#pragma once

#include <ctime>

/// Computes deadlines for locks.
class GUtils {
 public:
  /// Stores the wall-clock time `milliseconds` from now, as the deadline of a platform condition's
  /// timed wait.
  static void FutureMillisecondsToAbsTime(unsigned int milliseconds, timespec& result);
};
