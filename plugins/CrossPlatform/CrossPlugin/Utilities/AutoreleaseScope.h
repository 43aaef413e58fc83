#pragma once

// The runtime's own operations behind an autorelease block, which not every compiler has.
extern "C" void* objc_autoreleasePoolPush();
extern "C" void objc_autoreleasePoolPop(void* pool);

/// The objects that Cocoa autoreleases while this lives die with it. A local variable; scopes nest.
class AutoreleaseScope {
 public:
  AutoreleaseScope() : mPool(objc_autoreleasePoolPush()) {}
  ~AutoreleaseScope() { objc_autoreleasePoolPop(mPool); }
  AutoreleaseScope(const AutoreleaseScope&) = delete;
  AutoreleaseScope& operator=(const AutoreleaseScope&) = delete;

 private:
  void* mPool;
};
