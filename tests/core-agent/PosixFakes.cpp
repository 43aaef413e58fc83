#include "PosixFakes.h"

#include <dlfcn.h>
#include <pthread.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>

#include "AfterEachTest.h"

PosixFakes posixFakes;

namespace {

const bool kResets = AfterEachTest([] { posixFakes = {}; });

int Wait(pthread_mutex_t* mutex) {
  pthread_mutex_unlock(mutex);
  posixFakes.duringWait();
  pthread_mutex_lock(mutex);
  if (posixFakes.waitResults.empty()) return ETIMEDOUT;
  const int result = posixFakes.waitResults.front();
  posixFakes.waitResults.erase(posixFakes.waitResults.begin());
  return result;
}

template <typename Function>
Function* Real(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

int ResultOf(std::string_view function) {
  return function == posixFakes.failing ? EAGAIN : 0;
}

}  // namespace

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

int pthread_mutex_init(pthread_mutex_t* mutex, const pthread_mutexattr_t* attributes) noexcept {
  if (ResultOf(__func__) != 0) return ResultOf(__func__);
  return Real<decltype(pthread_mutex_init)>(__func__)(mutex, attributes);
}

int pthread_mutex_destroy(pthread_mutex_t*) noexcept {
  return ResultOf(__func__);
}

int pthread_cond_init(pthread_cond_t* condition, const pthread_condattr_t*) noexcept {
  *condition = PTHREAD_COND_INITIALIZER;
  return ResultOf(__func__);
}

int pthread_cond_destroy(pthread_cond_t*) noexcept {
  return ResultOf(__func__);
}

int pthread_cond_wait(pthread_cond_t*, pthread_mutex_t* mutex) {
  return Wait(mutex);
}

int pthread_cond_timedwait(pthread_cond_t*, pthread_mutex_t* mutex, const timespec* deadline) {
  posixFakes.timedWaitDeadlines.push_back(*deadline);
  return Wait(mutex);
}

int vsnprintf(char* buffer, size_t size, const char* format, va_list arguments) noexcept {
  if (posixFakes.formatFails) {
    std::fill_n(buffer, size, 'x');
    return -1;
  }
  static const auto real = Real<decltype(vsnprintf)>(__func__);
  return real(buffer, size, format, arguments);
}
}
#pragma GCC visibility pop
