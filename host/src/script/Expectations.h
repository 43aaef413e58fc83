#pragma once

#include <string_view>
#include <vector>

#include "SessionPart.h"

namespace host {

/// Reads the value of an `expect` step. Returns the step's action: it adds the expectations that
/// are met to the timeline and reports each other one. `part` reads those that aren't about the
/// host.
Action ReadExpectations(const YamlValue& value, const SessionPart& part);

/// Fails because of an unknown key or step, `what`. A key of `expect` is told to belong there,
/// which its indentation may have kept it from.
[[noreturn]] void FailForUnknown(const YamlValue& value, std::string_view what,
                                 const std::vector<std::string_view>& known,
                                 const SessionPart& part);

/// Reads one key of an `expect` that says what is true at a point, such as `project` or `files`, so
/// that it can be compared again and again. Fails for the others.
Check ReadPeek(const std::string& key, const YamlValue& value);

}  // namespace host
