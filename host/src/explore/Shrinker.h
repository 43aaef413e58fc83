#pragma once

#include "Runner.h"
#include "SessionPart.h"
#include "Trials.h"

namespace host {

/// Shortens a session that fails, as long as the kinds of its findings stay: leaves out the entries
/// of lists and maps that the failure doesn't need, and makes numbers small. Throws as
/// `PlaySessions` does.
void Shorten(Failure& failure, RunOptions options, const SessionPart& part);

}  // namespace host
