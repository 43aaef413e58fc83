#pragma once

#include <pthread.h>

/// Operations on threads. A thread handle is an opaque pointer, and null stands for no thread.
class GThread {
 public:
  /// The handle of the calling thread.
  static void* GetCurrentThread();

  /// Whether both are the same thread, or both none.
  static bool AreThreadsEqual(void* first, void* second);

  /// The platform half of `GetCurrentThread`.
  static void* OSGetCurrentThread();

  /// The platform's thread of a handle, which must not be null.
  static pthread_t OSGetPthreadFromOSData(void* data);
};
