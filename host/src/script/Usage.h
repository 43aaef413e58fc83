#pragma once

#include <cstdint>
#include <string>

#include "Host.h"

namespace host {

/// What the process that plays a session holds.
struct Usage {
  int64_t memory = 0;       ///< bytes in use of the heap; 0 where a sanitizer has its own
  int64_t descriptors = 0;  ///< open files, pipes and the like
  int64_t files = 0;        ///< in the session folder
  int64_t handles = 0;      ///< the plug-in's memory handles and blocks
  int64_t suites = 0;       ///< acquisitions that aren't released
};

Usage MeasureUsage(Host& host);

/// Returns what has grown, a line for each, or an empty text. Memory may differ by 16 KB.
std::string DescribeGrowth(const Usage& before, const Usage& now);

}  // namespace host
