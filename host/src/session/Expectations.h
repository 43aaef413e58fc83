#pragma once

#include <functional>

#include "Host.h"
#include "YamlValue.h"

namespace host {

/// Reads the value of an `expect` step. Returns the function that compares: it adds the
/// expectations that are met to the timeline and reports each other one as a failure.
std::function<void(Host&)> ReadExpectations(const YamlValue& value);

}  // namespace host
