#pragma once

#include <cstdint>
#include <string>

// Where the font manager's core process lies. Texts are UTF-8. Results are
// `CoreErrorCodes::kSuccess` or `CoreErrorCodes::kUnknownError`; an out-parameter is written only
// on success. Nothing is logged but what path values log. No state: any thread.

/// The folder, with a trailing "/", of the first running process whose executable has exactly the
/// name `processName`.
uint32_t GetPathToRunningProcessExe(const std::string& processName, std::string& folder);

/// The value of `key` in the file `folderName`/`fileName` of the user's library directory, by the
/// rules of `ReadConfiguredValue`.
uint32_t GetConfiguredPath(const std::string& folderName, const std::string& fileName,
                           const std::string& key, std::string& value);
