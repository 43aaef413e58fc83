#include <plist/plist.h>
#include <utf8.h>

#include "PlatformStringUtils.h"

std::string GetStdString(const __CFString* text) {
  // libplist takes its nodes as plain pointers and doesn't change this one.
  const auto node = const_cast<plist_t>(static_cast<const void*>(text));
  if (!node) return {};
  const std::string characters = plist_get_string_ptr(node, nullptr);
  return utf8::is_valid(characters.begin(), characters.end()) ? characters : std::string();
}
