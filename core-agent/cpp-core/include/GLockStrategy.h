#pragma once

#include <cstdint>

#include "GLockable.h"

/// How a `GScopedLock` takes a lock and gives it back. Both operations answer 0 on success.
class GLockStrategy {
 public:
  virtual ~GLockStrategy() = default;

  /// Takes the lock in the strategy's own way.
  virtual uint32_t Lock(GLockable& lockable) = 0;
  /// Gives the lock back; by default as the lockable does.
  virtual uint32_t Unlock(GLockable& lockable) { return lockable.Unlock(); }
};
