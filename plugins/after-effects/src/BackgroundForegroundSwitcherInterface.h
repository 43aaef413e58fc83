#pragma once

/// Takes the host out of the foreground for an instant. Main thread only.
class BackgroundForegroundSwitcherInterface {
 public:
  /// Makes another application the front application and brings the host straight back. Does
  /// nothing when the host isn't in front. `application_name` is not used and may be null.
  virtual void backgroundForegroundApp(char* application_name) = 0;

 protected:
  ~BackgroundForegroundSwitcherInterface() = default;
};
