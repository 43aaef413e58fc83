#pragma once

#include <stdexcept>

#include "desktop/Export.h"

namespace desktop {

/// The exception that operations of this layer throw, and windows that handle an event.
class DESKTOP_EXPORT Exception : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace desktop
