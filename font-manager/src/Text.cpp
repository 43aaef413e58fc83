#include "Text.h"

#include <cstring>

namespace tamberlink {

Strings split(std::string_view text, char separator) {
  Strings parts;
  while (!text.empty()) {
    const size_t end = text.find(separator);
    if (const std::string_view part = text.substr(0, end); !part.empty()) parts.emplace_back(part);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  }
  return parts;
}

std::pair<std::string, std::string> splitOnce(std::string_view text, char separator) {
  const size_t end = text.find(separator);
  if (end == std::string_view::npos) return {std::string(text), {}};
  return {std::string(text.substr(0, end)), std::string(text.substr(end + 1))};
}

std::string join(const Strings& strings) {
  std::string text;
  for (const std::string& string : strings) {
    if (!text.empty()) text += '\n';
    text += string;
  }
  return text;
}

std::string readBuffer(const char* buffer, uint64_t capacity) {
  const size_t length = strnlen(buffer, capacity);
  if (length == capacity && capacity > 0) return "(not terminated)";
  return {buffer, length};
}

bool writeBuffer(char* buffer, uint64_t capacity, std::string_view text) {
  const bool fits = text.size() < capacity;
  if (!fits) text = {};
  if (capacity == 0) return false;
  text.copy(buffer, text.size());
  buffer[text.size()] = '\0';
  return fits;
}

}  // namespace tamberlink
