#pragma once

#include <filesystem>

#include "SessionPart.h"

namespace host {

/// Returns what a session says of the font manager, whose framework and process are stand-ins in
/// the folder. Without a folder every word about the font manager is an error. Throws
/// `std::runtime_error` if the folder has no framework.
SessionPart MakeFontManager(const std::filesystem::path& folder);

}  // namespace host
