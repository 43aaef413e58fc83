#include <plist/plist.h>

#include <cstdint>

#include "PlatformStringUtils.h"

std::string GetStdString(const __CFString* text) {
  // libplist takes its nodes as plain pointers and doesn't change this one.
  const auto node = const_cast<plist_t>(static_cast<const void*>(text));
  if (!node || plist_get_node_type(node) != PLIST_STRING) return {};
  uint64_t length = 0;
  const char* characters = plist_get_string_ptr(node, &length);
  return characters ? std::string(characters, length) : std::string();
}
