#pragma once

#include <sys/time.h>

#include <cstddef>
#include <ctime>
#include <optional>
#include <vector>

/// What tests tell functions of the C library, and what those were asked. The functions are defined
/// in the test's own executable, which wins over the C library.
struct PosixFakes {
  /// What `gettimeofday` says, or the real time.
  std::optional<timeval> now;
  /// The results of the next timed waits; ETIMEDOUT follows. None of them waits.
  std::vector<int> timedWaitResults;
  std::vector<timespec> timedWaitDeadlines;
  /// Arguments of `usleep`, which does not sleep.
  std::vector<unsigned int> sleeps;
  /// The result of the next `pthread_cond_init`.
  int conditionInitResult = 0;
};
extern PosixFakes posixFakes;

/// Where `vsnprintf` notes the buffer sizes that it gets, unless null.
extern std::vector<size_t>* formatBufferSizes;
