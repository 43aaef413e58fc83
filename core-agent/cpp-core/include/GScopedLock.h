#pragma once

#include <memory>

#include "GLockStrategy.h"
#include "GLockable.h"

/// Holds a lock until the end of a block. For use only by the thread that made it.
///
/// Taking the lock can fail: test `IsLocked` before you touch the data that it guards.
class GScopedLock {
 public:
  /// Takes the lock at once, by a `GBlockingLockStrategy`. `lockable` must outlive this object.
  explicit GScopedLock(GLockable& lockable);
  /// Takes the lock at once if `lockNow`. `lockable` must outlive this object. Takes ownership of
  /// `strategy`. Null means a new `GBlockingLockStrategy`.
  GScopedLock(GLockable& lockable, bool lockNow, GLockStrategy* strategy);
  /// Releases the lock if it is held.
  ~GScopedLock();

  /// Takes the lock unless it is held already. Returns whether it is held now. Logs a failure at
  /// the level Debug.
  bool Lock();

  /// Releases the lock if it is held. Logs a failure at the level Error, after which
  /// the lock still counts as held.
  void Unlock();

  /// Returns whether this object holds the lock now.
  bool IsLocked() const;

 private:
  uint32_t LockByStrategy();
  uint32_t UnlockByStrategy();

  GLockable& mLockable;
  bool mIsLocked = false;
  const std::unique_ptr<GLockStrategy> mLockStrategy;
};
