#pragma once

#include <functional>
#include <string>

#include "desktop/Export.h"

namespace desktop {

/// Writes a line to the sink, or to standard error if there is none.
DESKTOP_EXPORT void Log(const std::string& line);
/// Replaces the sink. An empty function removes it.
DESKTOP_EXPORT void SetLogSink(std::function<void(const std::string& line)> sink);

}  // namespace desktop
