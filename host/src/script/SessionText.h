#pragma once

#include <yaml-cpp/yaml.h>

#include <string>

// Session files as YAML, for those who write them.

namespace host {

/// Returns the text of a session file, with the steps at its end. `comment` comes first, line by
/// line.
std::string WriteSession(const YAML::Node& session, const std::string& comment);

/// Returns the name of a session's step.
std::string StepName(const YAML::Node& step);

/// Returns a copy with a step, as YAML, put before all others.
YAML::Node WithFirstStep(const YAML::Node& session, const std::string& step);

}  // namespace host
