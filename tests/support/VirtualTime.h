#pragma once

#include <ctime>

/// The time that `time()` returns, also to modules loaded later. Seconds since 1970.
extern time_t virtual_time;
