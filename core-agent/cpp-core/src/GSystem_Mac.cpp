// Built everywhere: POSIX is enough. What tells macOS is in GSystem_Mac.mm.
#include <unistd.h>

#include "GSystem.h"

void GSystem::OSSleep(unsigned int milliseconds) {
  usleep(milliseconds * 1000);
}
