#pragma once

#include <string>
#include <vector>

namespace host {

/// Returns how two lists differ, in lines, or an empty text. Shows short lists whole, and of long
/// ones only the elements that differ.
std::string CompareLists(const std::vector<std::string>& expected,
                         const std::vector<std::string>& found);

}  // namespace host
