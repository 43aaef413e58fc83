#include "desktop/Workspace.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace desktop {

Workspace& Workspace::sharedWorkspace() {
  static auto& workspace = *new Workspace;
  return workspace;
}

const RunningApplication* Workspace::find(int32_t processIdentifier) const {
  const auto found =
      std::find_if(mRunning.begin(), mRunning.end(), [=](const RunningApplication& running) {
        return running.processIdentifier == processIdentifier;
      });
  return found == mRunning.end() ? nullptr : &*found;
}

const RunningApplication* Workspace::frontmostApplication() const {
  return find(mFront);
}

std::vector<RunningApplication> Workspace::runningApplicationsWithBundleIdentifier(
    const std::string& bundleIdentifier) const {
  std::vector<RunningApplication> matching;
  std::copy_if(mRunning.begin(), mRunning.end(), std::back_inserter(matching),
               [&](const RunningApplication& running) {
                 return running.bundleIdentifier == bundleIdentifier;
               });
  return matching;
}

bool Workspace::activate(int32_t processIdentifier) {
  const RunningApplication* application = find(processIdentifier);
  if (!application) return false;
  mFront = processIdentifier;
  if (mActivationObserver) mActivationObserver(*application);
  return true;
}

void Workspace::addRunningApplication(RunningApplication application) {
  mRunning.push_back(std::move(application));
}

void Workspace::setActivationObserver(
    std::function<void(const RunningApplication& application)> observer) {
  mActivationObserver = std::move(observer);
}

}  // namespace desktop
