#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "desktop/Export.h"

namespace desktop {

/// A running application: its process id, which is positive, and its bundle identifier.
struct RunningApplication {
  int32_t processIdentifier = 0;
  std::string bundleIdentifier;
};

/// The running applications, which the process's owner adds, and the one in front.
class DESKTOP_EXPORT Workspace {
 public:
  /// Returns the process's only workspace.
  static Workspace& sharedWorkspace();

  /// Returns the front application, or null. The result is valid until an application is added.
  const RunningApplication* frontmostApplication() const;
  /// Returns the applications with that identifier, in the order in which they were added.
  std::vector<RunningApplication> runningApplicationsWithBundleIdentifier(
      const std::string& bundleIdentifier) const;
  /// Brings the application to the front. Returns false and does nothing if there is none with that
  /// id.
  bool activate(int32_t processIdentifier);

  /// Adds a running application without activating it.
  void addRunningApplication(RunningApplication application);
  /// Calls `observer` after each activation, instead of the previous observer. An empty function
  /// removes it.
  void setActivationObserver(std::function<void(const RunningApplication& application)> observer);

 private:
  Workspace() = default;
  const RunningApplication* find(int32_t processIdentifier) const;

  std::vector<RunningApplication> mRunning;
  int32_t mFront = 0;
  std::function<void(const RunningApplication&)> mActivationObserver;
};

}  // namespace desktop
