#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "Findings.h"
#include "Session.h"

namespace host {

struct RunOptions {
  PluginModule module;                ///< its path is absolute
  std::filesystem::path fontManager;  ///< absolute, or empty for none
  std::chrono::seconds timeout{10};   ///< for each call of the plug-in
  size_t jobs = 1;                    ///< how many sessions are played at the same time
  bool failFast = false;              ///< begin no session after one has failed
  bool keep = false;                  ///< keep the session folders
  bool strict = false;                ///< warnings fail
  std::set<Finding> allowed;          ///< findings that don't count
};

struct FoundInSession {
  Finding finding = Finding::expectation;
  std::string text;  ///< may have several lines
};

/// What came of a session.
struct Played {
  std::vector<FoundInSession> findings;  ///< without those that are allowed
  bool complete = false;                 ///< every step was played
  std::filesystem::path folder;          ///< where it was kept; empty otherwise

  bool failed(bool strict) const;
};

/// Who hears of sessions while they are played.
struct RunListener {
  /// The session is the next to be heard of in full.
  std::function<void(const Session&)> begun;
  std::function<void(const std::string&)> line;  ///< of the timeline of the session that has begun
  std::function<void(const Session&, const Played&)> ended;
};

/// Plays each session in a process of its own. The listener hears of them in their order, of one
/// after the other. Returns the signal that ended it, or 0. Throws `std::runtime_error` if a
/// session can't be set up or the plug-in's module can't be loaded.
int PlaySessions(const std::vector<Session>& sessions, const RunOptions& options,
                 const RunListener& listener);

}  // namespace host
