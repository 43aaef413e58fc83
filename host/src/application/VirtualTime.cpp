#include "VirtualTime.h"

#include <dlfcn.h>

#include <ctime>

namespace {
int64_t now = host::kSessionStart;
}  // namespace

extern "C" [[gnu::visibility("default")]] time_t time(time_t* result) noexcept {
  if (result) *result = now;
  return now;
}

namespace host {

int64_t VirtualNow() {
  return now;
}

void AdvanceVirtualTime(int64_t seconds) {
  now += seconds;
}

bool ModulesSeeVirtualTime() {
  return dlsym(RTLD_DEFAULT, "time") == reinterpret_cast<void*>(&time);
}

}  // namespace host
