#pragma once

#include <cstdint>

#include "GLockable.h"

/// Decides how a `GScopedLock` takes and releases a lock. Both operations return 0 on success.
class GLockStrategy {
 public:
  virtual ~GLockStrategy() = default;

  /// Takes the lock, or returns why it can't.
  virtual uint32_t Lock(GLockable& lockable) = 0;
  /// Releases the lock. Returns the code of `GLockable::Unlock` by default.
  virtual uint32_t Unlock(GLockable& lockable) { return lockable.Unlock(); }
};
