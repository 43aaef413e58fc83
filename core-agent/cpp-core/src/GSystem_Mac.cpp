#include <unistd.h>

#include "GSystem.h"

void GSystem::OSSleep(unsigned int milliseconds) {
  usleep(milliseconds * 1000);
}
