#pragma once

#include <stdexcept>

#include "desktop/Export.h"

namespace desktop {

/// What an operation of this layer, or a window's own event handling, raises.
class DESKTOP_EXPORT Exception : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace desktop
