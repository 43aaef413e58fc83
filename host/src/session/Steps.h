#pragma once

#include <set>
#include <string>
#include <vector>

#include "Session.h"
#include "YamlValue.h"

namespace host {

/// Reads the steps of a session. `projects` are the project files that exist at its beginning. Adds
/// the steps "start" and "quit" at the two ends if the session lacks them.
std::vector<Step> ReadSteps(const YamlValue& steps, std::set<std::string> projects);

}  // namespace host
