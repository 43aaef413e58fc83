#pragma once

#include <atomic>

#include "GBlockingLockStrategy.h"
#include "GMutex.h"
#include "GScopedLock.h"

/// The one instance of `T`: made on first use under a lock, and never destroyed, so that it is
/// there for code that runs at process exit. For use by any thread.
template <typename T>
class GSingleton {
 public:
  /// The instance. Null only where the lock fails, which it does when the constructor of `T` asks
  /// for its own instance. The logger's must not: a failed lock is logged.
  static T* GetSharedInstance() {
    if (T* const instance = sInstance.load(std::memory_order_acquire)) return instance;
    // Local, because the first use may be at load time, before statics of a template are built.
    static GMutex sInstanceLock;
    const GScopedLock lock(sInstanceLock, true, new GBlockingLockStrategy);
    if (lock.IsLocked() && sInstance.load(std::memory_order_relaxed) == nullptr) {
      sInstance.store(new T, std::memory_order_release);
    }
    return sInstance.load(std::memory_order_relaxed);
  }

 private:
  // The first test takes no lock: the acquire there pairs with the release of the store.
  static inline constinit std::atomic<T*> sInstance = nullptr;
};
