#pragma once

#include <optional>
#include <string>

#include "Text.h"

/// The files of the session's folder, which is the working directory. Reads them at each use, since
/// the session writes them as it plays.
namespace tamberlink {

/// Reads a text file's lines but the empty ones. Returns null if it can't be read.
std::optional<Strings> readLines(const std::string& file);

/// Reads the lines of a file of the session. Takes a missing file for an empty one.
Strings readSessionLines(const std::string& file);

/// Appends a line to a file of the session. Throws `std::ios_base::failure` if it can't, since a
/// gap in the journal would pass for a call that never came.
void appendLine(const std::string& file, const std::string& line);

/// Reads a flag of the framework's state, or returns `byDefault` if it isn't there.
bool readFlag(const std::string& key, bool byDefault);

}  // namespace tamberlink
