#include "GUtils.h"

#include <sys/time.h>

void GUtils::FutureMillisecondsToAbsTime(unsigned int milliseconds, timespec& result) {
  constexpr long kNanosecondsPerSecond = 1000000000;
  timeval now;
  gettimeofday(&now, nullptr);
  result.tv_sec = now.tv_sec + milliseconds / 1000;
  result.tv_nsec = now.tv_usec * 1000L + (milliseconds % 1000) * 1000000L;
  if (result.tv_nsec >= kNanosecondsPerSecond) {
    result.tv_nsec -= kNanosecondsPerSecond;
    ++result.tv_sec;
  }
}
