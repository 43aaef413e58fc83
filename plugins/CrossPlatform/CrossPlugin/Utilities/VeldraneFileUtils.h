#pragma once

#include <cstdint>

namespace VeldraneFileUtils {

/// The content modification date of the file at the UTF-8 `path`, in whole seconds since 1 January
/// 1970 UTC. 0 for every failure: text that isn't UTF-8, no such file, no date.
int64_t GetFileModificationDate(const char* path);

}  // namespace VeldraneFileUtils
