#include "GScopedLock.h"

#include "CppCoreMacros.h"
#include "GBlockingLockStrategy.h"

GScopedLock::GScopedLock(GLockable& lockable, bool lockNow, GLockStrategy* strategy)
    : mLockable(lockable),
      mLockStrategy(strategy != nullptr ? strategy : new GBlockingLockStrategy) {
  if (lockNow) Lock();
}

GScopedLock::~GScopedLock() {
  Unlock();
}

bool GScopedLock::Lock() {
  if (!mIsLocked) {
    const uint32_t code = [this] {
      uint32_t err = CoreErrorCodes::kSuccess;
      // Debug, because a lock that is not to be had is an ordinary answer.
      CORE_CHECK_RESULT_AT_LEVEL(mLockStrategy->Lock(mLockable), GLogger::kLoggingLevelDebug,
                                 "Lockable");
      return err;
    }();
    mIsLocked = code == CoreErrorCodes::kSuccess;
  }
  return mIsLocked;
}

void GScopedLock::Unlock() {
  if (!mIsLocked) return;
  const uint32_t code = [this] {
    uint32_t err = CoreErrorCodes::kSuccess;
    CORE_CHECK_RESULT(mLockStrategy->Unlock(mLockable), "Lockable");
    return err;
  }();
  mIsLocked = code != CoreErrorCodes::kSuccess;
}

bool GScopedLock::IsLocked() const {
  return mIsLocked;
}
