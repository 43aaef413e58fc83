#include "CocoaFakes.h"
#include "StoppedClock.h"

void StopTheClock() {
  cocoaFakes.now = 0;
}
