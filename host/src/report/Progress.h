#pragma once

#include <string>

namespace host {

/// Shows the progress on a terminal, and removes it for an empty text. Writes to standard error, so
/// that redirected output stays the same.
void ShowProgress(const std::string& text);

}  // namespace host
