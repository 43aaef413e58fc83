#include "PosixFakes.h"
#include "StoppedClock.h"

void StopTheClock() {
  posixFakes.now = timeval{};
}
