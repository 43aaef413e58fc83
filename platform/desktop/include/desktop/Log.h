#pragma once

#include <functional>
#include <string>

#include "desktop/Export.h"

namespace desktop {

/// Writes one line to the system's log, which is the function set last; standard error by default.
DESKTOP_EXPORT void Log(const std::string& line);
DESKTOP_EXPORT void SetLogSink(std::function<void(const std::string& line)> sink);

}  // namespace desktop
