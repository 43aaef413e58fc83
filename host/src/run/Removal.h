#pragma once

#include <filesystem>

namespace host {

/// Removes the file, or the folder with all that is in it, also from folders that a plug-in has
/// closed to writers. Returns false if something is left.
bool RemoveWholly(const std::filesystem::path& path);

}  // namespace host
