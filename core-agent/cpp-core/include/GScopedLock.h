#pragma once

#include <memory>

#include "GLockStrategy.h"
#include "GLockable.h"

/// Holds a lock for as long as a block of code runs. For use only by the thread that made it.
///
/// Taking the lock can fail: test `IsLocked` before touching what it guards.
class GScopedLock {
 public:
  /// Takes the lock at once if `lockNow`. `lockable` must outlive this object. Takes ownership of
  /// `strategy`; null stands for a new `GBlockingLockStrategy`.
  GScopedLock(GLockable& lockable, bool lockNow, GLockStrategy* strategy);
  /// Gives the lock back if it is held.
  ~GScopedLock();

  /// Tries to take the lock, unless it is held already, and answers whether it is held now. A
  /// failure leaves an entry at the level Debug.
  bool Lock();

  /// Gives the lock back if it is held. After a failure, which leaves an entry in the log, it
  /// counts as held still.
  void Unlock();

  /// Whether this object holds the lock now.
  bool IsLocked() const;

 private:
  uint32_t LockByStrategy();
  uint32_t UnlockByStrategy();

  GLockable& mLockable;
  bool mIsLocked = false;
  const std::unique_ptr<GLockStrategy> mLockStrategy;
};
