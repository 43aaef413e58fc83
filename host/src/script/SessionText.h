#pragma once

#include <yaml-cpp/yaml.h>

#include <string>
#include <string_view>

#include "YamlValue.h"

// Session files as YAML, for those who write them.

namespace host {

/// Returns the session that a variant of a file is, without variants and variables. The file has
/// been read before.
YAML::Node ResolveVariant(const std::string& file, const std::string& variant);

/// Returns the text of a session file. `comment` comes first, line by line.
std::string WriteSession(const YAML::Node& session, const std::string& comment);

/// Returns whether the step of a session has the name.
bool IsStep(const YAML::Node& step, std::string_view name);

/// Returns a copy with a step, as YAML, put before all others.
YAML::Node WithFirstStep(const YAML::Node& session, const std::string& step);

}  // namespace host
