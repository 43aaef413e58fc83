#pragma once

#include <cstdint>

/// How often this process has allocated by `operator new`.
extern int64_t allocation_count;
