#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <set>
#include <vector>

#include "Findings.h"
#include "RunListener.h"
#include "Session.h"

namespace host {

/// What the command line says of a run.
struct RunOptions {
  PluginModule module;          ///< its path is absolute
  int64_t timeoutSeconds = 30;  ///< for each call of the plug-in, and what the host does itself
  size_t jobs = 1;              ///< how many sessions are played at the same time
  bool failFast = false;        ///< begin no session after one has failed
  bool keep = false;            ///< keep the session folders
  bool strict = false;          ///< warnings fail
  std::set<Finding> allowed;    ///< findings that don't count
  std::vector<KnownIssue> knownIssues;  ///< of every session
};

/// Returns the next session to play, or null when there are no more.
using NextSession = std::function<std::shared_ptr<const Session>()>;
/// Returns each of the sessions, which outlive it.
NextSession EachOf(const std::vector<Session>& sessions);

/// Plays each session in a process of its own. The listeners hear of them. Throws
/// `std::runtime_error` if a session can't be set up or the plug-in's module can't be loaded.
void PlaySessions(const NextSession& next, const RunOptions& options,
                  const std::vector<RunListener*>& listeners);

/// Returns the signal that has ended `PlaySessions`, which then plays nothing more, or 0.
int CaughtSignal();

}  // namespace host
