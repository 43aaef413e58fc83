#pragma once

#include <vector>

#include "SessionPart.h"

namespace host {

/// Returns the sessions that suit any plug-in. `part` outlives them.
std::vector<Session> ValidationSessions(const SessionPart& part);

}  // namespace host
