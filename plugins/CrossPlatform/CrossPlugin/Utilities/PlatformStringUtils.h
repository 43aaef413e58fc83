#pragma once

#include <string>

/// The platform's text object: a `CFString` on macOS, a string node of libplist on Linux.
struct __CFString;

/// Converts the text to UTF-8. Returns an empty text for null, for an object that isn't text and
/// for a failed conversion. Doesn't take ownership.
std::string GetStdString(const __CFString* text);
