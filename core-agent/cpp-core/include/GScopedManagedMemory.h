#pragma once

/// A scope that releases at its end what the platform autoreleased inside it.
///
/// Does nothing on a platform without such objects. If the platform can't make a scope, logs a
/// failed check and does nothing. Scopes may nest. Only for local variables: the thread that makes
/// a scope must end it.
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

  [[maybe_unused]] void* mOSManagedMemory;  // the platform's scope, null for none
};
