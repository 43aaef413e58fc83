#pragma once

#include <istream>
#include <string>

// What the search for a process decides above the platform. Texts are UTF-8 bytes. No state:
// any thread.

/// Whether `executablePath` ends in exactly `processName`; if so, its folder with a trailing "/"
/// goes to `folder`.
bool GetFolderIfExecutableIs(const std::string& processName, const char* executablePath,
                             std::string& folder);

/// The value on the first line of `stream` that holds `key` anywhere and has a value: the bytes
/// behind its first "=", up to its first CR or its end; a CR in front of the "=" leaves no value.
/// Lines end in LF. False, with `value` untouched, when there is no such line or the stream fails
/// first.
bool ReadConfiguredValue(std::istream& stream, const std::string& key, std::string& value);
