#pragma once

#include <string>
#include <vector>

namespace host {

/// Returns the two lines that show what was expected and what was found.
std::string DescribeMismatch(const std::string& expected, const std::string& found);

/// Returns how two lists differ, in lines, or an empty text. Shows short lists whole, and of long
/// ones only the elements that differ.
std::string CompareLists(const std::vector<std::string>& expected,
                         const std::vector<std::string>& found);

}  // namespace host
