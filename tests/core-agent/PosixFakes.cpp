#include "PosixFakes.h"

#include <dlfcn.h>
#include <pthread.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>

PosixFakes posixFakes;
std::vector<size_t>* formatBufferSizes = nullptr;

extern "C" {

__attribute__((visibility("default"))) int gettimeofday(timeval* time, void*) noexcept {
  if (posixFakes.now) {
    *time = *posixFakes.now;
    return 0;
  }
  timespec now;
  clock_gettime(CLOCK_REALTIME, &now);
  *time = {now.tv_sec, now.tv_nsec / 1000};
  return 0;
}

__attribute__((visibility("default"))) int usleep(useconds_t microseconds) {
  posixFakes.sleeps.push_back(microseconds);
  return 0;
}

__attribute__((visibility("default"))) int pthread_cond_init(pthread_cond_t* condition,
                                                             const pthread_condattr_t*) noexcept {
  *condition = PTHREAD_COND_INITIALIZER;
  return posixFakes.conditionInitResult;
}

__attribute__((visibility("default"))) int pthread_cond_timedwait(pthread_cond_t*, pthread_mutex_t*,
                                                                  const timespec* deadline) {
  posixFakes.timedWaitDeadlines.push_back(*deadline);
  if (posixFakes.timedWaitResults.empty()) return ETIMEDOUT;
  const int result = posixFakes.timedWaitResults.front();
  posixFakes.timedWaitResults.erase(posixFakes.timedWaitResults.begin());
  return result;
}

__attribute__((visibility("default"))) int vsnprintf(char* buffer, size_t size, const char* format,
                                                     va_list arguments) noexcept {
  if (formatBufferSizes != nullptr) formatBufferSizes->push_back(size);
  static const auto real =
      reinterpret_cast<int (*)(char*, size_t, const char*, va_list)>(dlsym(RTLD_NEXT, "vsnprintf"));
  return real(buffer, size, format, arguments);
}
}
