// Built everywhere: POSIX is enough.
#include <bit>

#include "GThread.h"

// A `pthread_t` is a pointer, or an integer of that size: the handle holds it directly.

void* GThread::OSGetCurrentThread() {
  return std::bit_cast<void*>(pthread_self());
}

pthread_t GThread::OSGetPthreadFromOSData(void* data) {
  return std::bit_cast<pthread_t>(data);
}
