#pragma once

#include <functional>
#include <string>

#include "desktop/Export.h"

namespace desktop {

/// Writes one line to the system's log: to the sink, or to standard error without one.
DESKTOP_EXPORT void Log(const std::string& line);
/// Replaces the sink. An empty function takes it away.
DESKTOP_EXPORT void SetLogSink(std::function<void(const std::string& line)> sink);

}  // namespace desktop
