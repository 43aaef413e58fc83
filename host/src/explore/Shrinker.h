#pragma once

#include <yaml-cpp/yaml.h>

#include <functional>

namespace host {

/// Returns whether a session still fails as the first one did. A session that can't be read
/// doesn't.
using StillFails = std::function<bool(const YAML::Node&)>;

/// Returns the shortest session found that still fails: without the steps, set-up and numbers that
/// the failure doesn't need. Asks at most `maxTrials` times.
YAML::Node Shrink(const YAML::Node& session, const StillFails& stillFails, int maxTrials);

}  // namespace host
