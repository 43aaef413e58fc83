#include "Comparison.h"

#include <fmt/format.h>

#include <algorithm>

#include "TextFile.h"

namespace host {
namespace {

// Escapes texts so that different ones look different: a line feed as "\n", a backslash as two.
std::string Escape(std::string text) {
  ReplaceAll(text, "\\", R"(\\)");
  return EscapeControls(text);
}

std::string Show(const std::vector<std::string>& list) {
  return list.empty() ? "nothing" : Join(list, ", ");
}

std::string DescribeMismatch(const std::string& expected, const std::string& found) {
  return fmt::format("    expected: {}\n    found:    {}", Escape(expected), Escape(found));
}

}  // namespace

std::string CompareLists(const std::vector<std::string>& expected,
                         const std::vector<std::string>& found) {
  constexpr size_t kShort = 8;
  if (expected == found) return "";
  const size_t count = std::max(expected.size(), found.size());
  if (count <= kShort) return DescribeMismatch(Show(expected), Show(found));
  std::string lines =
      fmt::format("    (- expected, + found; {} and {} elements)", expected.size(), found.size());
  for (size_t i = 0; i < count; ++i) {
    const bool isExpected = i < expected.size();
    const bool isFound = i < found.size();
    if (isExpected && isFound && expected[i] == found[i]) continue;
    if (isExpected) lines += fmt::format("\n    - {} {}", i + 1, Escape(expected[i]));
    if (isFound) lines += fmt::format("\n    + {} {}", i + 1, Escape(found[i]));
  }
  return lines;
}

}  // namespace host
