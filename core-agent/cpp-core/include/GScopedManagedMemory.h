#pragma once

/// A scope for objects that the platform autoreleases: they die when it ends.
///
/// Holds nothing on a platform without such objects. If the platform gives no scope, logs a failed
/// check and does nothing. Scopes may nest. For local variables only: the thread that makes a scope
/// must end it.
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
