#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tamberlink {

using Strings = std::vector<std::string>;

/// The parts of `text` between the separators. Empty parts are left out.
Strings split(std::string_view text, char separator);

/// The text before the first separator and the text behind it, which is empty without a separator.
std::pair<std::string, std::string> splitOnce(std::string_view text, char separator);

/// The strings as a list: one a line, without a line feed at the end.
std::string join(const Strings& strings);

/// The text in a caller's buffer of `capacity` bytes. It ends with the buffer if nothing ends it
/// before.
std::string readBuffer(const char* buffer, uint64_t capacity);

/// Puts the text and a terminator into a caller's buffer of `capacity` bytes. A text that doesn't
/// fit leaves the buffer empty, rather than with a font's name cut in two, and gives false.
bool writeBuffer(char* buffer, uint64_t capacity, std::string_view text);

}  // namespace tamberlink
