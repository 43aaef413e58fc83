#pragma once

#include <cstdint>
#include <string>

namespace host {

/// The call by which the plug-in got something that it has to give back.
struct Origin {
  const char* function = "";  ///< static text
  const char* hook = "";      ///< static text
  int64_t tick = 0;

  /// As "AEGP_GetProjectPath in the idle hook at tick 3".
  std::string text() const;
};

}  // namespace host
