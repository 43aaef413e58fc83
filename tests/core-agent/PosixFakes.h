#pragma once

#include <sys/time.h>

#include <ctime>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

/// The results that tests set for functions of the C library, and the arguments that these got. The
/// test's executable defines the functions, and its definitions win over the C library's.
struct PosixFakes {
  /// The time that `gettimeofday` gives. Without one, it gives the real time in whole seconds.
  std::optional<timeval> now;
  /// The results of the next waits for a condition, with and without a deadline, which return at
  /// once. Further ones return ETIMEDOUT.
  std::vector<int> waitResults;
  std::vector<timespec> timedWaitDeadlines;
  /// Runs during a wait, which has released the platform's mutex.
  std::function<void()> duringWait = [] {};
  /// The arguments of `usleep`, which returns at once.
  std::vector<unsigned int> sleeps;
  /// The name of a function that makes or destroys a mutex or a condition, and fails.
  std::string_view failing;
  /// Makes `vsnprintf` fail after it has filled the buffer.
  bool formatFails = false;
};

/// As new at the start of every test.
extern PosixFakes posixFakes;
