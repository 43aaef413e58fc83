#include "VirtualTime.h"

#include <dlfcn.h>
#include <pthread.h>
#include <semaphore.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

#include <ctime>

#define EXPORTED extern "C" [[gnu::visibility("default")]]

namespace {

int64_t now = host::kSessionStart;

template <typename Function>
bool IsFoundFirst(const char* name, Function* function) {
  return dlsym(RTLD_DEFAULT, name) == reinterpret_cast<void*>(function);
}

// Moves a deadline from the virtual to the real clock. One of a clock that goes on, such as the
// time since the system started, is far before every session.
timespec RealDeadline(timespec deadline) {
  constexpr int64_t kYear = 31'536'000;
  if (deadline.tv_sec < host::kSessionStart - kYear) return deadline;
  timespec real{};
  syscall(SYS_clock_gettime, CLOCK_REALTIME, &real);
  constexpr long kSecond = 1'000'000'000;
  deadline.tv_sec += real.tv_sec - now;
  deadline.tv_nsec += real.tv_nsec;
  if (deadline.tv_nsec >= kSecond) {
    deadline.tv_nsec -= kSecond;
    ++deadline.tv_sec;
  }
  return deadline;
}

// Waits by the C library's function of that name. A wait until a time of the clocks that stand
// still takes as long as it would if they went on.
template <typename... Objects>
int Wait(const char* name, const timespec& deadline, Objects*... objects) {
  using Function = int (*)(Objects * ..., const timespec*);
  static const auto wait = reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
  const timespec real = RealDeadline(deadline);
  return wait(objects..., &real);
}

}  // namespace

EXPORTED time_t time(time_t* result) noexcept {
  if (result) *result = now;
  return now;
}

EXPORTED int gettimeofday(timeval* __restrict result, void* __restrict /*zone*/) noexcept {
  // The C library declares it as never null, but answers 0 for null.
  timeval* volatile place = result;
  if (place) *place = {now, 0};
  return 0;
}

EXPORTED int clock_gettime(clockid_t clock, timespec* result) noexcept {
  if (clock != CLOCK_REALTIME && clock != CLOCK_REALTIME_COARSE && clock != CLOCK_REALTIME_ALARM &&
      clock != CLOCK_TAI) {
    return static_cast<int>(syscall(SYS_clock_gettime, clock, result));
  }
  *result = {now, 0};
  return 0;
}

EXPORTED int timespec_get(timespec* result, int base) noexcept {
  if (base != TIME_UTC) return 0;
  *result = {now, 0};
  return base;
}

EXPORTED int pthread_cond_timedwait(pthread_cond_t* condition, pthread_mutex_t* mutex,
                                    const timespec* deadline) {
  return Wait("pthread_cond_timedwait", *deadline, condition, mutex);
}

EXPORTED int pthread_mutex_timedlock(pthread_mutex_t* mutex, const timespec* deadline) noexcept {
  return Wait("pthread_mutex_timedlock", *deadline, mutex);
}

EXPORTED int sem_timedwait(sem_t* semaphore, const timespec* deadline) {
  return Wait("sem_timedwait", *deadline, semaphore);
}

namespace host {

int64_t VirtualNow() {
  return now;
}

void AdvanceVirtualTime(int64_t seconds) {
  now += seconds;
}

bool ModulesSeeVirtualTime() {
  return IsFoundFirst("time", &time) && IsFoundFirst("gettimeofday", &gettimeofday) &&
         IsFoundFirst("clock_gettime", &clock_gettime) &&
         IsFoundFirst("timespec_get", &timespec_get);
}

}  // namespace host
