#pragma once

#include <atomic>

#include "GMutex.h"
#include "GScopedLock.h"

/// The one instance of `T`, made on first use under a lock. Any thread.
///
/// Never destroyed, and still not for use once static objects are being destroyed: the static
/// objects that `T` works with may be gone by then. So nobody may log in a static destructor, where
/// even a failed check ends the process.
template <typename T>
class GSingleton {
 public:
  /// Returns the instance. Returns null only if the lock fails, as it does when the constructor of
  /// `T` asks for the instance. The logger's constructor must not ask: a failed lock is logged.
  static T* GetSharedInstance() {
    if (T* const instance = sInstance.load(std::memory_order_acquire)) return instance;
    // Local, because the first use may come at load time, before statics of a template are built.
    static GMutex sInstanceLock;
    const GScopedLock lock(sInstanceLock);
    if (lock.IsLocked() && sInstance.load(std::memory_order_relaxed) == nullptr) {
      sInstance.store(new T, std::memory_order_release);
    }
    return sInstance.load(std::memory_order_relaxed);
  }

 private:
  // The first load needs no lock, because its acquire pairs with the release of the store.
  static inline constinit std::atomic<T*> sInstance = nullptr;
};
