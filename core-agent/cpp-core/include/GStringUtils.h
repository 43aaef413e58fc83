#pragma once

#include <cstdarg>
#include <string>
#include <vector>

/// Byte-wise operations on text. Nothing here decodes UTF-8, every comparison is exact and
/// case-sensitive, and arguments are never changed: the result is a new value. Any thread.
class GStringUtils {
 public:
  /// The pieces of `text` between the occurrences of `delimiter`, which counts as a whole.
  ///
  /// Empty pieces stay: "a,,b" gives "a", "", "b", and "a," gives "a", "". Where `text` or
  /// `delimiter` is empty, the one piece is `text`.
  static std::vector<std::string> Split(const std::string& text, const std::string& delimiter);

  /// `text` without the whole run of `prefix` at its start: "aab" without "a" gives "b".
  ///
  /// Where something was removed, the rest ends at its first NUL.
  static std::string StripPrecedingString(const std::string& text, const std::string& prefix);

  /// `text` without the whole run of `suffix` at its end: "a///" without "/" gives "a".
  static std::string StripTrailingString(const std::string& text, const std::string& suffix);

  /// Whether `text` begins with `prefix`. Every text begins with the empty one.
  static bool BeginsWith(const std::string& text, const std::string& prefix);

  /// Whether `text` ends with `suffix`. Every text ends with the empty one.
  static bool EndsWith(const std::string& text, const std::string& suffix);

  /// The platform's `vsnprintf`: writes at most `size` bytes, the terminator included.
  ///
  /// Returns the length that the complete text needs without its terminator, or a negative number
  /// on a format error. `arguments` is used up.
  static int OSvsnprintf(char* buffer, unsigned long size, const char* format, va_list arguments);

  /// `text` with each byte mapped to lower case by the process's current locale.
  ///
  /// In the POSIX locale only A to Z change, so UTF-8 passes through intact.
  static std::string OSToLowerCase(const std::string& text);
};
