#include <CoreFoundation/CoreFoundation.h>

#include <vector>

#include "PlatformStringUtils.h"

std::string GetStdString(const __CFString* text) {
  if (!text) return {};
  const CFIndex length = CFStringGetLength(text);
  if (length == 0) return {};
  const CFIndex size = CFStringGetMaximumSizeForEncoding(length, kCFStringEncodingUTF8) + 1;
  std::vector<char> buffer(static_cast<size_t>(size));
  if (!CFStringGetCString(text, buffer.data(), size, kCFStringEncodingUTF8)) return {};
  return buffer.data();
}
