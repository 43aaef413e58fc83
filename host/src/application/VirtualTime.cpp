#include "VirtualTime.h"

#include <dlfcn.h>
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
