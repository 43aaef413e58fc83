#pragma once

#include <ctime>

/// What `time()` answers in this process, also to modules loaded later. Seconds since 1970.
extern time_t virtual_time;
