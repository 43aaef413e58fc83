#pragma once

#include <yaml-cpp/yaml.h>

#include "SessionPart.h"

namespace host {

/// Makes up a tolerant session: its set-up, and steps of the user, the host, the clock and what
/// `part` knows, in any order. One session in two has faults.
YAML::Node MakeRandomSession(Random& random, const SessionPart& part);

}  // namespace host
