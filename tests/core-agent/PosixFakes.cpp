#include "PosixFakes.h"

#include <dlfcn.h>
#include <pthread.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>

PosixFakes posixFakes;
std::vector<size_t>* formatBufferSizes = nullptr;

#pragma GCC visibility push(default)
extern "C" {

int gettimeofday(timeval* time, void*) noexcept {
  *time = posixFakes.now.value_or(timeval{std::time(nullptr), 0});
  return 0;
}

int usleep(useconds_t microseconds) {
  posixFakes.sleeps.push_back(microseconds);
  return 0;
}

int pthread_cond_init(pthread_cond_t* condition, const pthread_condattr_t*) noexcept {
  *condition = PTHREAD_COND_INITIALIZER;
  return posixFakes.conditionInitResult;
}

int pthread_cond_timedwait(pthread_cond_t*, pthread_mutex_t*, const timespec* deadline) {
  posixFakes.timedWaitDeadlines.push_back(*deadline);
  if (posixFakes.timedWaitResults.empty()) return ETIMEDOUT;
  const int result = posixFakes.timedWaitResults.front();
  posixFakes.timedWaitResults.erase(posixFakes.timedWaitResults.begin());
  return result;
}

int vsnprintf(char* buffer, size_t size, const char* format, va_list arguments) noexcept {
  if (formatBufferSizes != nullptr) formatBufferSizes->push_back(size);
  static const auto real =
      reinterpret_cast<int (*)(char*, size_t, const char*, va_list)>(dlsym(RTLD_NEXT, "vsnprintf"));
  return real(buffer, size, format, arguments);
}
}
#pragma GCC visibility pop
