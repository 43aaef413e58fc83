#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "desktop/Export.h"

namespace desktop {

/// An application with its process id, which is positive, and its bundle identifier.
struct RunningApplication {
  int32_t processIdentifier = 0;
  std::string bundleIdentifier;
};

/// The running applications, and which of them is in front. The process's owner adds them.
class DESKTOP_EXPORT Workspace {
 public:
  /// Returns the process's only workspace.
  static Workspace& sharedWorkspace();

  /// Returns the front application, or null. Valid until one is added.
  const RunningApplication* frontmostApplication() const;
  /// Lists them in the order in which they were added.
  std::vector<RunningApplication> runningApplicationsWithBundleIdentifier(
      const std::string& bundleIdentifier) const;
  /// Brings the application to the front. Returns false and does nothing if there is none with that
  /// id.
  bool activate(int32_t processIdentifier);

  /// Adds a running application without activating it.
  void addRunningApplication(RunningApplication application);
  /// Calls `observer` after each activation, instead of the one before. An empty function removes
  /// it.
  void setActivationObserver(std::function<void(const RunningApplication& application)> observer);

 private:
  Workspace() = default;
  const RunningApplication* find(int32_t processIdentifier) const;

  std::vector<RunningApplication> mRunning;
  int32_t mFront = 0;
  std::function<void(const RunningApplication&)> mActivationObserver;
};

}  // namespace desktop
