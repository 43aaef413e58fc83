// The part of the macOS half that needs only POSIX, so every platform builds it. The part that only
// macOS builds is in GSystem_Mac.mm.
#include <unistd.h>

#include "GSystem.h"

void GSystem::OSSleep(unsigned int milliseconds) {
  usleep(milliseconds * 1000);
}
