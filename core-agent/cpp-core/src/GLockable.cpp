#include "GLockable.h"

#include <algorithm>

#include "GSystem.h"

uint32_t GLockable::TryLockWithTimeout(unsigned int milliseconds) {
  if (milliseconds == 0) return TryLock();

  constexpr unsigned int kSlice = 50;
  uint32_t code = kLockBusyErr;
  for (unsigned int remaining = milliseconds; remaining != 0;) {
    code = TryLock();
    if (code != kLockBusyErr) break;
    const unsigned int pause = std::min(kSlice, remaining);
    GSystem::OSSleep(pause);
    remaining -= pause;
  }
  return code;
}
