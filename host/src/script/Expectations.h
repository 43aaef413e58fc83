#pragma once

#include <vector>

#include "SessionPart.h"

namespace host {

/// Reads the value of an `expect` step. Returns the step's action, which adds each expectation to
/// the timeline, met or not. `part` reads those that aren't about the host.
Action ReadExpectations(const YamlValue& value, const SessionPart& part);

/// Fails if the key of the value is one of `expect`, which its indentation may have kept it from.
void RefuseExpectation(const YamlValue& value, const SessionPart& part);

/// Reads keys of an `expect` that say what is true at a point, such as `project` or `files`, so
/// that they can be compared again and again. Fails for the others.
Check ReadLasting(const std::vector<YamlValue>& values);

}  // namespace host
