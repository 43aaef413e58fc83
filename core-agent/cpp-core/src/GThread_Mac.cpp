// Needs only POSIX, so every platform builds it.
#include <bit>

#include "GThread.h"

// The handle is the `pthread_t` itself, which is a pointer or an integer of that size.

void* GThread::OSGetCurrentThread() {
  return std::bit_cast<void*>(pthread_self());
}

pthread_t GThread::OSGetPthreadFromOSData(void* data) {
  return std::bit_cast<pthread_t>(data);
}
