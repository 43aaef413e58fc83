// Needs only POSIX, so every platform builds it.
#include <algorithm>
#include <cctype>
#include <cstdio>

#include "GStringUtils.h"

namespace {

struct GLowerCaseFunctor {
  // `tolower` takes negative characters in the C libraries of macOS and Linux.
  char operator()(char byte) const {
    return static_cast<char>(std::tolower(static_cast<signed char>(byte)));
  }
};

}  // namespace

int GStringUtils::OSvsnprintf(char* buffer, unsigned long size, const char* format,
                              va_list arguments) {
  return std::vsnprintf(buffer, size, format, arguments);
}

std::string GStringUtils::OSToLowerCase(const std::string& text) {
  std::string lower = text;
  std::transform(lower.begin(), lower.end(), lower.begin(), GLowerCaseFunctor());
  return lower;
}
