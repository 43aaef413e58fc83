#pragma once

/// Main thread only.
class BackgroundForegroundSwitcherInterface {
 public:
  /// Brings another application to the front and the host straight back. Does nothing if the host
  /// isn't in front. Ignores `application_name`.
  virtual void backgroundForegroundApp(char* application_name) = 0;

 protected:
  ~BackgroundForegroundSwitcherInterface() = default;
};
