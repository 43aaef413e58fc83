#pragma once

#include <cstdint>

#include "GNoncopyable.h"

/// Something that one thread at a time can hold. All operations answer a code of
/// `CoreErrorCodes`' numbering, 0 on success, and never throw.
class GLockable : private GNoncopyable {
 public:
  /// Somebody else holds the lock and the caller's patience has run out.
  static constexpr uint32_t kLockBusyErr = 0x0100100C;

  virtual ~GLockable() = default;

  /// Takes the lock and waits for it without limit.
  virtual uint32_t Lock() = 0;

  /// Takes the lock if that needs no wait, and answers `kLockBusyErr` otherwise.
  virtual uint32_t TryLock() = 0;

  /// Takes the lock and waits at most `milliseconds`; answers `kLockBusyErr` when they run out.
  ///
  /// The default, for a lockable without timed waits, polls `TryLock` every 50 milliseconds and
  /// does not try again after the last sleep: 120 milliseconds give attempts at 0, 50 and 100.
  virtual uint32_t TryLockWithTimeout(unsigned int milliseconds);

  /// Gives the lock back.
  virtual uint32_t Unlock() = 0;
};
