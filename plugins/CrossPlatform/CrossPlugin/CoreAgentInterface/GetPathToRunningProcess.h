#pragma once

#include <cstdint>
#include <istream>
#include <string>
#include <vector>

// Finds the font manager's core process. Texts are UTF-8. Keeps no state, so any thread may call.

// The two searches return `CoreErrorCodes::kSuccess` or `CoreErrorCodes::kUnknownError`, write
// their out-parameter only on success, and log nothing beyond what path values log.

/// Finds the first running process whose executable is named exactly `processName`. Writes its
/// folder, as in "/Apps/Core/", to `folder`.
uint32_t GetPathToRunningProcessExe(const std::string& processName, std::string& folder);

/// Reads the value of `key` from `folderName`/`fileName` in the user's library directory.
uint32_t GetConfiguredPath(const std::string& folderName, const std::string& fileName,
                           const std::string& key, std::string& value);

/// Reads the value of `key` from lines that end in LF. The first line that holds `key` anywhere and
/// has a value decides: the value is what follows the first "=", up to the first CR or the line's
/// end, as " a=b" in "# key.old = a=b". A CR before the "=" leaves no value. Returns false, with
/// `value` untouched, without such a line.
bool ReadConfiguredValue(std::istream& stream, const std::string& key, std::string& value);

// Platform functions of the two searches.

/// Lists the executables of the running processes by their full paths, in the order of the search.
/// Passes over processes that have none.
std::vector<std::string> GetRunningExecutables();

/// Writes the user's library directory to `directory`. Leaves it unchanged where there is none.
void GetUsersAppDataDirectory(std::string& directory);
