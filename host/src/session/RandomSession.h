#pragma once

#include <yaml-cpp/yaml.h>

#include "Random.h"
#include "SessionPart.h"

namespace host {

/// Makes up a tolerant session: its set-up, and steps of the user, the host, the clock and what
/// `part` knows, in any order. One session in two has faults.
YAML::Node MakeRandomSession(Random& random, const SessionPart& part);

/// Makes a tolerant session of another one: puts random steps between its own, and leaves out some
/// of these. `session` has no variants.
YAML::Node MakeRandomSessionFrom(const YAML::Node& session, Random& random,
                                 const SessionPart& part);

}  // namespace host
