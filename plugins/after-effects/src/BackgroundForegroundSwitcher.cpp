#include "BackgroundForegroundSwitcher.h"

#include <unistd.h>

#include "DebugUtils.h"
#include "FrontApplication.h"

void BackgroundForegroundSwitcher::backgroundForegroundApp(char* /*application_name*/) {
  OutputIndentedAndFormattedString(+1, "BackgroundForegroundSwitcher::backgroundForegroundApp");
  const int own = getpid();
  int front = 0;
  GetFrontProcessID(front);
  if (own == front) {
    int dock = 0;
    GetProcessID("com.apple.dock", dock);
    if (dock != 0) {
      SetFrontApplication(dock);
      SetFrontApplication(own);
    }
  }
  OutputIndentedAndFormattedString(-1,
                                   "Exiting BackgroundForegroundSwitcher::backgroundForegroundApp");
}
