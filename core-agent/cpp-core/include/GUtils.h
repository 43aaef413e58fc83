#pragma once

#include <ctime>

/// Computes deadlines for the locks.
class GUtils {
 public:
  /// Stores the wall-clock time `milliseconds` from now, the deadline of a timed wait on a platform
  /// condition.
  static void FutureMillisecondsToAbsTime(unsigned int milliseconds, timespec& result);
};
