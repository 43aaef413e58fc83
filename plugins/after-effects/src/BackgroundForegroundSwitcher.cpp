#include "BackgroundForegroundSwitcher.h"

#include <unistd.h>

#include "BackgroundForegroundSwitcherPlatform.h"
#include "DebugUtils.h"

void TraceActivation(int pid, bool accepted) {
  if (!TraceIsOn()) return;
  OutputIndentedAndFormattedString(0, "The platform %s to bring process %d to the front",
                                   accepted ? "agreed" : "refused", pid);
}

void BackgroundForegroundSwitcher::backgroundForegroundApp(char* /*application_name*/) {
  OutputIndentedAndFormattedString(+1, "BackgroundForegroundSwitcher::backgroundForegroundApp");
  const int own = getpid();
  int front = 0;
  GetFrontProcessID(front);
  int dock = 0;
  if (own == front) GetProcessID("com.apple.dock", dock);
  if (dock != 0) {
    SetFrontApplication(dock);
    SetFrontApplication(own);
  } else if (TraceIsOn() && own != front) {
    OutputIndentedAndFormattedString(0, "No switch: process %d is in front, not the host", front);
  } else if (TraceIsOn()) {
    OutputIndentedAndFormattedString(0, "No switch: no Dock is running");
  }
  OutputIndentedAndFormattedString(-1,
                                   "Exiting BackgroundForegroundSwitcher::backgroundForegroundApp");
}
