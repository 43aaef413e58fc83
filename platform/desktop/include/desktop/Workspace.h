#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "desktop/Export.h"

namespace desktop {

/// An application by its process id, which is above 0, and its bundle identifier.
struct RunningApplication {
  int32_t processIdentifier = 0;
  std::string bundleIdentifier;
};

/// The applications that run, as far as this desktop knows, and which of them is in front.
class DESKTOP_EXPORT Workspace {
 public:
  /// The one workspace of the process.
  static Workspace& sharedWorkspace();

  /// Null when no application is in front. Valid until the list changes.
  const RunningApplication* frontmostApplication() const;
  /// In the order in which they were added.
  std::vector<RunningApplication> runningApplicationsWithBundleIdentifier(
      const std::string& bundleIdentifier) const;
  /// Brings the application to the front; nothing happens when there is none with that id.
  void activate(int32_t processIdentifier);

  /// What runs is the process's owner's to say.
  void addRunningApplication(RunningApplication application);
  /// Called after each activation. Replaces the one before; an empty function takes it away.
  void setActivationObserver(std::function<void(const RunningApplication& application)> observer);

 private:
  Workspace() = default;
  const RunningApplication* find(int32_t processIdentifier) const;

  std::vector<RunningApplication> mRunning;
  int32_t mFront = 0;
  std::function<void(const RunningApplication&)> mActivationObserver;
};

}  // namespace desktop
