#pragma once

#include <cstdint>

namespace VeldraneFileUtils {

/// Returns when the content of the file at the UTF-8 `path` was modified, in whole seconds since 1
/// January 1970 UTC. Returns 0 for text that isn't UTF-8, and for a file that isn't there or has no
/// date.
int64_t GetFileModificationDate(const char* path);

}  // namespace VeldraneFileUtils
