#pragma once

#include "BackgroundForegroundSwitcherInterface.h"

/// Brings the Dock to the front and the host straight back.
class BackgroundForegroundSwitcher final : public BackgroundForegroundSwitcherInterface {
 public:
  void backgroundForegroundApp(char* application_name) override;
};
