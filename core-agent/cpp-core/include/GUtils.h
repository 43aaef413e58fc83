#pragma once

#include <ctime>

/// Helpers of the locks.
class GUtils {
 public:
  /// Stores the wall clock's time in so many milliseconds, the deadline of a timed wait on a
  /// platform condition.
  static void FutureMillisecondsToAbsTime(unsigned int milliseconds, timespec& result);
};
