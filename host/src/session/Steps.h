#pragma once

#include <set>
#include <string>
#include <vector>

#include "Session.h"
#include "YamlValue.h"

namespace host {

/// Reads the steps of a session. `projects` are the project files that there are at its beginning.
/// A session that doesn't say when the host starts or quits gets these steps at its two ends.
std::vector<Step> ReadSteps(const YamlValue& steps, std::set<std::string> projects);

}  // namespace host
