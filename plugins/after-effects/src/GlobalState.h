#pragma once

#include "GlobalStateInterface.h"

/// The state over the real host and framework.
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

/// The plug-in's single state, which the hooks and the modal override reach by name.
extern GlobalState global_state;
