#pragma once

#include <pthread.h>

#include <cstdint>

#include "GLockable.h"

/// A mutex that knows its owner: a monitor over a platform mutex and a condition.
///
/// Not recursive: an owner that locks again gets an error, and doesn't hang. An unlock wakes one
/// waiter, but another thread may take the lock before it. Any thread.
class GMutex : public GLockable {
 public:
  /// The owner locked again, or a thread unlocked that isn't the owner.
  static constexpr uint32_t kMutexDeadlockErr = 0x0100100B;
  /// The platform reported an invalid mutex or condition.
  static constexpr uint32_t kMutexInvalidErr = 0x0200100B;

  /// Aborts the process, in every build type, if the platform fails.
  GMutex();
  /// The mutex must be free and have no waiters. Aborts the process if the platform fails.
  ~GMutex() override;

  /// Returns `kMutexDeadlockErr` at once if this thread holds the lock.
  uint32_t Lock() override;
  /// Returns `kMutexDeadlockErr` if this thread holds the lock, `kLockBusyErr` if another does.
  uint32_t TryLock() override;
  /// Acts as `TryLock` for 0 milliseconds and as `Lock` for 0xFFFFFFFF. Otherwise returns
  /// `kLockBusyErr` when the time runs out.
  uint32_t TryLockWithTimeout(unsigned int milliseconds) override;
  /// Returns `kMutexDeadlockErr` and changes nothing if this thread doesn't hold the lock. Other
  /// codes convert a failure of the platform.
  uint32_t Unlock() override;

 private:
  uint32_t LockInternal(unsigned int milliseconds);
  uint32_t WaitUntilFree(unsigned int milliseconds);

  pthread_mutex_t mMonitorMutex;     // guards the fields below, released while waiting
  pthread_cond_t mMonitorCondition;  // signalled when the mutex becomes free
  uint32_t mLockCount = 0;           // 0 when free, 1 while held
  pthread_t mOwnerThread{};          // meaningful only while mLockCount is not 0
};
