#pragma once

#include <cstdarg>
#include <string>
#include <vector>

/// Operations on text as bytes. None decodes UTF-8 or ignores case, and each returns a new value.
/// Any thread.
class GStringUtils {
 public:
  /// Returns the pieces of `text` between the occurrences of `delimiter`, which is one string.
  ///
  /// Keeps empty pieces: "a,,b" gives "a", "", "b", and "a," gives "a", "". If `text` or
  /// `delimiter` is empty, the only piece is `text`.
  static std::vector<std::string> Split(const std::string& text, const std::string& delimiter);

  /// Returns `text` without the whole run of `prefix` at its start: "aab" without "a" gives "b".
  ///
  /// If a prefix was removed, the rest ends at its first NUL.
  static std::string StripPrecedingString(const std::string& text, const std::string& prefix);

  /// Returns `text` without the whole run of `suffix` at its end: "a///" without "/" gives "a".
  static std::string StripTrailingString(const std::string& text, const std::string& suffix);

  /// Returns whether `text` begins with `prefix`. Every text begins with the empty one.
  static bool BeginsWith(const std::string& text, const std::string& prefix);

  /// Returns whether `text` ends with `suffix`. Every text ends with the empty one.
  static bool EndsWith(const std::string& text, const std::string& suffix);

  /// Calls the platform's `vsnprintf`, which writes at most `size` bytes, the terminator included.
  ///
  /// Returns the length that the complete text needs without its terminator, or a negative number
  /// on a format error. Uses up `arguments`.
  static int OSvsnprintf(char* buffer, unsigned long size, const char* format, va_list arguments);

  /// Returns `text` with each byte mapped to lower case by the process's current locale.
  ///
  /// In the POSIX locale only A to Z change, so UTF-8 passes through intact.
  static std::string OSToLowerCase(const std::string& text);
};
