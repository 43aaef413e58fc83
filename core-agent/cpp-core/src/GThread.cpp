#include "GThread.h"

void* GThread::GetCurrentThread() {
  return OSGetCurrentThread();
}

bool GThread::AreThreadsEqual(void* first, void* second) {
  if (first == nullptr || second == nullptr) return first == second;
  return pthread_equal(OSGetPthreadFromOSData(first), OSGetPthreadFromOSData(second)) != 0;
}
