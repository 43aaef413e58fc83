#pragma once

#include <cstdint>

/// How many times this process has called `operator new`.
extern int64_t allocation_count;
