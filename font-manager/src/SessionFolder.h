#pragma once

#include <optional>
#include <string>

#include "Text.h"

/// The files of the session's folder, which is the working directory. They are read anew at each
/// use, since the session writes them while it plays.
namespace tamberlink {

/// The lines of a text file, without the empty ones. Null if the file can't be read.
std::optional<Strings> readLines(const std::string& file);

/// The lines of a file of the session, of which a missing one counts as empty.
Strings readSessionLines(const std::string& file);

/// Appends a line to a file of the session. Throws `std::ios_base::failure`: a journal with a gap
/// would pass for a session in which nothing happened.
void appendLine(const std::string& file, const std::string& line);

/// A flag of the framework's state, or `byDefault` if the state doesn't say.
bool readFlag(const std::string& key, bool byDefault);

}  // namespace tamberlink
