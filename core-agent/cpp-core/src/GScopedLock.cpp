#include "GScopedLock.h"

#include "CppCoreMacros.h"
#include "GBlockingLockStrategy.h"

GScopedLock::GScopedLock(GLockable& lockable) : GScopedLock(lockable, true, nullptr) {}

GScopedLock::GScopedLock(GLockable& lockable, bool lockNow, GLockStrategy* strategy)
    : mLockable(lockable),
      mLockStrategy(strategy != nullptr ? strategy : new GBlockingLockStrategy) {
  if (lockNow) Lock();
}

GScopedLock::~GScopedLock() {
  Unlock();
}

bool GScopedLock::Lock() {
  if (!mIsLocked) LockByStrategy();
  return mIsLocked;
}

void GScopedLock::Unlock() {
  if (mIsLocked) UnlockByStrategy();
}

bool GScopedLock::IsLocked() const {
  return mIsLocked;
}

uint32_t GScopedLock::LockByStrategy() {
  uint32_t err = CoreErrorCodes::kSuccess;
  // Debug, because callers expect failures.
  CORE_CHECK_RESULT_AT_LEVEL(mLockStrategy->Lock(mLockable), GLogger::kLoggingLevelDebug,
                             "Lockable");
  mIsLocked = true;
  return err;
}

uint32_t GScopedLock::UnlockByStrategy() {
  uint32_t err = CoreErrorCodes::kSuccess;
  CORE_CHECK_RESULT(mLockStrategy->Unlock(mLockable), "Lockable");
  mIsLocked = false;
  return err;
}
