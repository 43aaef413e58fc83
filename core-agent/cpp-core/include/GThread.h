#pragma once

#include <pthread.h>

/// Operations on threads. A thread handle is an opaque pointer. Null means no thread.
class GThread {
 public:
  /// Returns the handle of the calling thread.
  static void* GetCurrentThread();

  /// Returns whether both are the same thread, or both null.
  static bool AreThreadsEqual(void* first, void* second);

  /// The platform half of `GetCurrentThread`.
  static void* OSGetCurrentThread();

  /// Returns the platform's thread of a handle, which must not be null.
  static pthread_t OSGetPthreadFromOSData(void* data);
};
