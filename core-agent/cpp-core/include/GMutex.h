#pragma once

#include <pthread.h>

#include <cstdint>

#include "GLockable.h"

/// A mutex that knows its owner: a monitor over a platform mutex and a condition.
///
/// Not recursive, but an owner that locks again gets an error instead of a hang. For use by any
/// thread. A released lock is handed to nobody in particular; one waiter is woken for each release.
class GMutex : public GLockable {
 public:
  /// The owner locks again, or someone unlocks who is not the owner.
  static constexpr uint32_t kMutexDeadlockErr = 0x0100100B;
  /// The platform calls the mutex or the condition invalid.
  static constexpr uint32_t kMutexInvalidErr = 0x0200100B;

  /// Ends the process, in every build type, if the platform refuses.
  GMutex();
  /// The mutex must be free and have no waiters. Ends the process if the platform refuses.
  ~GMutex() override;

  /// `kMutexDeadlockErr`, at once, if this thread holds the lock already.
  uint32_t Lock() override;
  /// `kMutexDeadlockErr` if this thread holds the lock, `kLockBusyErr` if another one does.
  uint32_t TryLock() override;
  /// As `TryLock` with 0 milliseconds, as `Lock` with 0xFFFFFFFF; otherwise `kLockBusyErr` once the
  /// time has run out.
  uint32_t TryLockWithTimeout(unsigned int milliseconds) override;
  /// `kMutexDeadlockErr` if this thread does not hold the lock; nothing changes then. Any other
  /// code is the platform's, converted.
  uint32_t Unlock() override;

 private:
  uint32_t LockInternal(unsigned int milliseconds);
  uint32_t WaitUntilFree(unsigned int milliseconds);

  pthread_mutex_t mMonitorMutex;     // guards the fields below, released while waiting
  pthread_cond_t mMonitorCondition;  // signalled when the mutex becomes free
  uint32_t mLockCount = 0;           // 0 when free, 1 while held
  pthread_t mOwnerThread{};          // meaningful only while mLockCount is not 0
};
