#pragma once

/// A scope for the objects that the platform frees by itself: those made inside it die with it.
///
/// On a platform without such memory it holds nothing. Scopes may nest. A local variable: made and
/// destroyed on the same thread. Where the platform gives no scope, the failed check is logged and
/// the object does nothing.
class GScopedManagedMemory {
 public:
  /// Opens the scope.
  GScopedManagedMemory();
  /// Closes the scope, if there is one.
  ~GScopedManagedMemory();
  GScopedManagedMemory(const GScopedManagedMemory&) = delete;
  GScopedManagedMemory& operator=(const GScopedManagedMemory&) = delete;

 private:
  void OSSetupManagedMemory();
  void OSTearDownManagedMemory();

  void* mOSManagedMemory;  // the platform's scope, null for none
};
