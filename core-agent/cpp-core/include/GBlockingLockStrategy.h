#pragma once

#include <cstdint>

#include "GLockStrategy.h"

/// Waits for the lock without limit.
class GBlockingLockStrategy : public GLockStrategy {
 public:
  ~GBlockingLockStrategy() override = default;

  /// Returns the code of `GLockable::Lock`.
  uint32_t Lock(GLockable& lockable) override { return lockable.Lock(); }
};
