#pragma once

#include "SessionPart.h"

namespace host {

/// Reads the calls of the framework that an `expect` expects. Throws `SessionFileError`.
Check ReadExpectedCalls(const YamlValue& value);

}  // namespace host
