#include <plist/plist.h>
#include <utf8.h>

#include "PlatformStringUtils.h"

std::string GetStdString(const __CFString* text) {
  // libplist takes its nodes as plain pointers and doesn't change this one.
  const auto node = const_cast<plist_t>(static_cast<const void*>(text));
  const char* characters = node ? plist_get_string_ptr(node, nullptr) : nullptr;
  if (!characters) return {};
  std::string converted = characters;
  if (!utf8::is_valid(converted.begin(), converted.end())) converted.clear();
  return converted;
}
