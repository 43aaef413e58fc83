#pragma once

#include <functional>

#include "Host.h"
#include "YamlValue.h"

namespace host {

/// Reads the value of an `expect` step. What it gives compares, tells the timeline which of it
/// came true, and reports the rest as shortfalls.
std::function<void(Host&)> ReadExpectations(const YamlValue& value);

}  // namespace host
