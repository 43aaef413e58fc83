#pragma once

#include "SessionPart.h"

namespace host {

/// Reads the value of an `expect` step. Returns the step's action: it adds the expectations that
/// are met to the timeline and reports each other one. `part` reads those that aren't about the
/// host.
Action ReadExpectations(const YamlValue& value, const SessionPart& part);

}  // namespace host
