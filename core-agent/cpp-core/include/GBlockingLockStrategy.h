#pragma once

#include <cstdint>

#include "GLockStrategy.h"

/// Waits for the lock without limit.
class GBlockingLockStrategy : public GLockStrategy {
 public:
  ~GBlockingLockStrategy() override = default;

  /// Answers what `GLockable::Lock` does.
  uint32_t Lock(GLockable& lockable) override { return lockable.Lock(); }
};
