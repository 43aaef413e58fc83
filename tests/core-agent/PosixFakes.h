#pragma once

#include <sys/time.h>

#include <cstddef>
#include <ctime>
#include <optional>
#include <vector>

/// The results that tests set for functions of the C library, and the arguments that these got. The
/// test's executable defines the functions, and its definitions win over the C library's.
struct PosixFakes {
  /// The time that `gettimeofday` gives. Without one, it gives the real time in whole seconds.
  std::optional<timeval> now;
  /// The results of the next timed waits, which return at once. Further ones return ETIMEDOUT.
  std::vector<int> timedWaitResults;
  std::vector<timespec> timedWaitDeadlines;
  /// The arguments of `usleep`, which returns at once.
  std::vector<unsigned int> sleeps;
  /// The result of every `pthread_cond_init`.
  int conditionInitResult = 0;
};
extern PosixFakes posixFakes;

/// Gets the buffer size of every `vsnprintf`, unless null.
extern std::vector<size_t>* formatBufferSizes;
