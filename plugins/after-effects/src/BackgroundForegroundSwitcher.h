#pragma once

#include "BackgroundForegroundSwitcherInterface.h"

/// Makes the system's Dock the front application for an instant.
class BackgroundForegroundSwitcher final : public BackgroundForegroundSwitcherInterface {
 public:
  void backgroundForegroundApp(char* application_name) override;
};
