// Keeps this unit's assertions in every build type, because a half-made mutex must not exist.
#undef NDEBUG
#include "GMutex.h"

#include <cassert>
#include <cerrno>

#include "CoreErrorCodes.h"
#include "GUtils.h"

namespace {

constexpr unsigned int kNoWait = 0;
constexpr unsigned int kNoLimit = 0xFFFFFFFF;

// Cold, so that a build optimized across units can inline its callers.
[[gnu::cold]] uint32_t ConvertPthreadError(int result) {
  switch (result) {
    case 0:
      return CoreErrorCodes::kSuccess;
    case EDEADLK:
      return GMutex::kMutexDeadlockErr;
    case EINVAL:
      return GMutex::kMutexInvalidErr;
    case ETIMEDOUT:
      return GLockable::kLockBusyErr;
    default:
      return CoreErrorCodes::kError;
  }
}

}  // namespace

GMutex::GMutex() {
  int result = pthread_mutex_init(&mMonitorMutex, nullptr);
  assert(result == 0);
  result = pthread_cond_init(&mMonitorCondition, nullptr);
  assert(result == 0);
}

GMutex::~GMutex() {
  int result = pthread_mutex_destroy(&mMonitorMutex);
  assert(result == 0);
  result = pthread_cond_destroy(&mMonitorCondition);
  assert(result == 0);
}

uint32_t GMutex::Lock() {
  return LockInternal(kNoLimit);
}

uint32_t GMutex::TryLock() {
  return LockInternal(kNoWait);
}

uint32_t GMutex::TryLockWithTimeout(unsigned int milliseconds) {
  return LockInternal(milliseconds);
}

uint32_t GMutex::LockInternal(unsigned int milliseconds) {
  const pthread_t self = pthread_self();
  uint32_t code = CoreErrorCodes::kSuccess;
  pthread_mutex_lock(&mMonitorMutex);
  if (mLockCount != 0) {
    // The owner never waits, whatever the limit, because it would wait for itself.
    const bool isOwner = pthread_equal(self, mOwnerThread) != 0;
    code = isOwner ? kMutexDeadlockErr : WaitUntilFree(milliseconds);
  }
  if (code == CoreErrorCodes::kSuccess) {
    mLockCount = 1;
    mOwnerThread = self;
  }
  pthread_mutex_unlock(&mMonitorMutex);
  return code;
}

// Call it with mMonitorMutex held, which the wait releases. On success the count is 0: if another
// thread takes the lock between the signal and the wake-up, this one waits again.
uint32_t GMutex::WaitUntilFree(unsigned int milliseconds) {
  if (milliseconds == kNoWait) return kLockBusyErr;

  int result = 0;
  if (milliseconds == kNoLimit) {
    while (mLockCount > 0 && result == 0) {
      result = pthread_cond_wait(&mMonitorCondition, &mMonitorMutex);
    }
  } else {
    timespec deadline;
    GUtils::FutureMillisecondsToAbsTime(milliseconds, deadline);
    while (mLockCount > 0 && result == 0) {
      result = pthread_cond_timedwait(&mMonitorCondition, &mMonitorMutex, &deadline);
    }
  }
  return ConvertPthreadError(result);
}

uint32_t GMutex::Unlock() {
  int result = pthread_mutex_lock(&mMonitorMutex);
  if (result != 0) return ConvertPthreadError(result);

  uint32_t code = kMutexDeadlockErr;
  if (mLockCount != 0 && pthread_equal(pthread_self(), mOwnerThread) != 0) {
    mLockCount = 0;
    result = pthread_cond_signal(&mMonitorCondition);
    code = result == 0 ? CoreErrorCodes::kSuccess : ConvertPthreadError(result);
  }
  pthread_mutex_unlock(&mMonitorMutex);
  return code;
}
