#pragma once

#include <string>

/// The platform's immutable text object: a `CFString` on macOS, a string node of libplist on Linux.
struct __CFString;

/// The text as UTF-8. Empty for null, for empty text and for a failed conversion. Takes no
/// ownership.
std::string GetStdString(const __CFString* text);
