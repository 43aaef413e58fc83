#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "desktop/Export.h"

namespace desktop {

enum ApplicationActivationOptions : uint32_t {
  kActivateAllWindows = 1,
  kActivateIgnoringOtherApps = 2,
};

struct RunningApplication {
  int32_t processIdentifier = 0;
  std::string bundleIdentifier;
};

/// The applications that run, as far as this desktop knows, and which of them is in front.
class DESKTOP_EXPORT Workspace {
 public:
  static Workspace& sharedWorkspace();

  /// Null when no application is in front. Valid until the list changes.
  const RunningApplication* frontmostApplication() const;
  std::vector<RunningApplication> runningApplicationsWithBundleIdentifier(
      const std::string& bundleIdentifier) const;
  /// Brings the application to the front; false when there is none with that id.
  bool activate(int32_t processIdentifier, uint32_t options);

  void addRunningApplication(RunningApplication application);
  void removeRunningApplication(int32_t processIdentifier);
  /// Called after each activation.
  void setActivationObserver(std::function<void(const RunningApplication& application)> observer);

 private:
  Workspace() = default;
  const RunningApplication* find(int32_t processIdentifier) const;

  std::vector<RunningApplication> mRunning;
  int32_t mFront = 0;
  std::function<void(const RunningApplication&)> mActivationObserver;
};

}  // namespace desktop
