#include "BackgroundForegroundSwitcherPlatform.h"
#include "desktop/Workspace.h"

using desktop::Workspace;

int GetFrontProcessID(int& pid) {
  const desktop::RunningApplication* front = Workspace::sharedWorkspace().frontmostApplication();
  if (!front) return kNoFrontApplication;
  pid = front->processIdentifier;
  return 0;
}

int GetProcessID(const char* bundle_id, int& pid) {
  const auto running =
      Workspace::sharedWorkspace().runningApplicationsWithBundleIdentifier(bundle_id);
  if (running.empty()) return kNoSuchApplication;
  pid = running.front().processIdentifier;
  return 0;
}

void SetFrontApplication(int pid) {
  TraceActivation(pid, Workspace::sharedWorkspace().activate(pid));
}
