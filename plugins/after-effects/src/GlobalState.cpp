#include "GlobalState.h"

#include <ctime>

#include "AEProjectPathUtils.h"
#include "AE_APISuiteHandlerManager.h"
#include "BackgroundForegroundSwitcher.h"
#include "DebugUtils.h"
#include "NSAppOverride.h"
#include "TBKLoader.h"
#include "VeldraneFileUtils.h"

GlobalState global_state;

void GlobalState::SetProjectIsReopening(bool reopening) {
  projectIsReopening = reopening;
}

bool GlobalState::ProjectIsReopening() {
  return projectIsReopening;
}

void GlobalState::setShouldSuppressModalWindows(bool suppress) {
  suppressModalWindows = suppress;
}

bool GlobalState::shouldSuppressModalWindows() {
  return suppressModalWindows;
}

void GlobalState::startFontActivationProcess() {
  AE_APISuiteHandlerManager manager(picaBasicSuite);
  AEProjectPathUtils pathUtils;
  activationProjectPath = pathUtils.getAfterEffectsProjectPathUTF8(&manager);
  if (TraceIsOn()) {
    OutputIndentedAndFormattedString(0, "%s",
                                     activationProjectPath.empty()
                                         ? "No activation starts: the project has no path"
                                         : "An activation starts");
  }
  if (activationProjectPath.empty()) return;
  ticksSinceActivationStart = 0;
  fontActivationInProgress = true;
  setShouldSuppressModalWindows(false);
}

void GlobalState::endFontActivationProcess() {
  activationProjectPath.clear();
  fontActivationInProgress = false;
  setShouldSuppressModalWindows(true);
}

void GlobalState::projectOpened() {
  projectWasOpened();
}

bool GlobalState::isPluginEnabled() {
  static bool plugin_is_enabled = true;
  // Nothing sets it: the framework must show nothing while the host begins a dialog.
  static bool should_display_plugin_disabled_popup = false;
  AskWhetherPluginIsEnabled(should_display_plugin_disabled_popup, &plugin_is_enabled);
  return plugin_is_enabled;
}

bool GlobalState::isProjectDirty() {
  AEProjectPathUtils pathUtils;
  AE_APISuiteHandlerManager manager(picaBasicSuite);
  return pathUtils.isAfterEffectsProjectDirty(&manager);
}

void GlobalState::updateGlobalState() {
  if (!suiteHandlerManager) {
    suiteHandlerManager = std::make_shared<AE_APISuiteHandlerManager>(picaBasicSuite);
  }
  if (!projectPathUtils) projectPathUtils = std::make_shared<AEProjectPathUtils>();
  if (!backgroundForegroundSwitcher) {
    backgroundForegroundSwitcher = std::make_shared<BackgroundForegroundSwitcher>();
  }
  const int64_t lastModificationDate = currentProjectModificationDate;
  currentProjectPath = projectPathUtils->getAfterEffectsProjectPathUTF8(suiteHandlerManager.get());
  currentProjectDirty = projectPathUtils->isAfterEffectsProjectDirty(suiteHandlerManager.get());
  currentProjectModificationDate =
      currentProjectPath.empty()
          ? 0
          : VeldraneFileUtils::GetFileModificationDate(currentProjectPath.c_str());
  currentTime = time(nullptr);
  ++ticksSinceActivationStart;
  if (TraceIsOn() &&
      (currentProjectPath != lastProjectPath || currentProjectDirty != lastProjectDirty ||
       currentProjectModificationDate != lastModificationDate)) {
    OutputIndentedAndFormattedString(0, "Project '%s', %s, modified at %lld, seen at %lld",
                                     currentProjectPath.c_str(),
                                     currentProjectDirty ? "unsaved changes" : "no unsaved changes",
                                     static_cast<long long>(currentProjectModificationDate),
                                     static_cast<long long>(currentTime));
  }
}
