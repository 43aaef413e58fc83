#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tamberlink {

using Strings = std::vector<std::string>;

/// Splits `text` at the separators and drops empty parts: "a;;b" gives "a" and "b".
Strings split(std::string_view text, char separator);

/// Splits `text` at the first separator: "a=b=c" gives "a" and "b=c", "a" gives "a" and "".
std::pair<std::string, std::string> splitOnce(std::string_view text, char separator);

/// Joins the strings with line feeds.
std::string join(const Strings& strings);

/// Reads the text in a caller's buffer of `capacity` bytes. Returns "(not terminated)" if there is
/// no NUL in it.
std::string readBuffer(const char* buffer, uint64_t capacity);

/// Writes the text and a terminator to a caller's buffer of `capacity` bytes. If they don't fit,
/// leaves the buffer empty, rather than cut a font's name in two, and returns false.
bool writeBuffer(char* buffer, uint64_t capacity, std::string_view text);

}  // namespace tamberlink
