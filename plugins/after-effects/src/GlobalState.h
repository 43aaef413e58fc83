#pragma once

#include "GlobalStateInterface.h"

/// Works on the real host and framework.
class GlobalState final : public GlobalStateInterface {
 public:
  void SetProjectIsReopening(bool reopening) override;
  bool ProjectIsReopening() override;
  void setShouldSuppressModalWindows(bool suppress) override;
  bool shouldSuppressModalWindows() override;
  void startFontActivationProcess() override;
  void endFontActivationProcess() override;
  void projectOpened() override;
  bool isPluginEnabled() override;
  bool isProjectDirty() override;
  void updateGlobalState() override;
};

/// The one instance.
extern GlobalState global_state;
