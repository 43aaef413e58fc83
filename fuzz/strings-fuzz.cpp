#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "GStringUtils.h"
#include "Require.h"

// Input: one byte with the length of the part, the part, and the text. The part serves as
// delimiter, prefix and suffix. The models compare byte by byte.

namespace {

bool HasAt(const std::string& text, size_t position, const std::string& part) {
  if (part.size() > text.size() || position > text.size() - part.size()) return false;
  for (size_t i = 0; i < part.size(); ++i) {
    if (text[position + i] != part[i]) return false;
  }
  return true;
}

std::vector<std::string> Split(const std::string& text, const std::string& delimiter) {
  std::vector<std::string> pieces(1);
  for (size_t i = 0; i < text.size();) {
    if (!delimiter.empty() && HasAt(text, i, delimiter)) {
      pieces.emplace_back();
      i += delimiter.size();
    } else {
      pieces.back() += text[i++];
    }
  }
  return pieces;
}

std::string StripPreceding(const std::string& text, const std::string& prefix) {
  if (prefix.empty() || !HasAt(text, 0, prefix)) return text;
  std::string rest;
  for (size_t i = prefix.size(); i < text.size() && text[i] != '\0'; ++i) rest += text[i];
  return StripPreceding(rest, prefix);
}

std::string StripTrailing(const std::string& text, const std::string& suffix) {
  size_t end = text.size();
  while (!suffix.empty() && end >= suffix.size() &&
         HasAt(text.substr(0, end), end - suffix.size(), suffix)) {
    end -= suffix.size();
  }
  return text.substr(0, end);
}

std::string LowerCase(std::string text) {
  for (char& byte : text) {
    if ('A' <= byte && byte <= 'Z') byte = static_cast<char>(byte - 'A' + 'a');
  }
  return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const std::string input(reinterpret_cast<const char*>(data) + 1, size - 1);
  const size_t length = std::min<size_t>(data[0], input.size());
  const std::string part = input.substr(0, length);
  const std::string text = input.substr(length);

  Require(GStringUtils::Split(text, part) == Split(text, part), "Split equals its model");
  Require(GStringUtils::StripPrecedingString(text, part) == StripPreceding(text, part),
          "StripPrecedingString equals its model");
  Require(GStringUtils::StripTrailingString(text, part) == StripTrailing(text, part),
          "StripTrailingString equals its model");
  Require(GStringUtils::BeginsWith(text, part) == HasAt(text, 0, part),
          "BeginsWith equals its model");
  Require(GStringUtils::EndsWith(text, part) ==
              (part.size() <= text.size() && HasAt(text, text.size() - part.size(), part)),
          "EndsWith equals its model");
  Require(GStringUtils::OSToLowerCase(text) == LowerCase(text),
          "OSToLowerCase equals its model in the POSIX locale");
  return 0;
}
