#pragma once

#include <cstdint>

#include "GNoncopyable.h"

/// A lock that one thread at a time can hold. All operations return an error code, 0 on success,
/// and never throw.
class GLockable : private GNoncopyable {
 public:
  /// Another thread held the lock until the time limit.
  static constexpr uint32_t kLockBusyErr = 0x0100100C;

  virtual ~GLockable() = default;

  /// Takes the lock. Waits without limit.
  virtual uint32_t Lock() = 0;

  /// Takes the lock if it is free. Returns `kLockBusyErr` at once if another thread holds it.
  virtual uint32_t TryLock() = 0;

  /// Takes the lock. Waits for at most `milliseconds`, then returns `kLockBusyErr`.
  ///
  /// By default, for a lock without timed waits, calls `TryLock` every 50 milliseconds, but not
  /// after the last sleep: with 120 milliseconds, at 0, 50 and 100.
  virtual uint32_t TryLockWithTimeout(unsigned int milliseconds);

  /// Releases the lock.
  virtual uint32_t Unlock() = 0;
};
