#pragma once

#include <set>
#include <string>
#include <vector>

#include "Session.h"
#include "SessionPart.h"
#include "YamlValue.h"

namespace host {

/// Reads the steps of a session. `projects` are the project files that exist at its beginning. Adds
/// the steps "start" and "quit" at the two ends if the session lacks them. `part` reads the steps
/// that aren't the host's.
std::vector<Step> ReadSteps(const YamlValue& steps, std::set<std::string> projects,
                            const SessionPart& part);

}  // namespace host
