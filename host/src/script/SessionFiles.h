#pragma once

#include <yaml-cpp/yaml.h>

#include <string>
#include <vector>

#include "SessionPart.h"

// Session files: those that the command line names, and those that are written.

namespace host {

/// Reads the sessions of all files, or without any those that suit any plug-in, and keeps those
/// whose name the regular expression finds. A name that two files have gets the folder in front.
/// Throws one `SessionFileError` with all faults of all files, and if no session is left. `part`
/// outlives the sessions.
std::vector<Session> LoadSessions(const std::vector<std::string>& files,
                                  const std::string& expression, const SessionPart& part);

/// Returns the sessions that suit any plug-in.
std::vector<Session> ValidationSessions(const SessionPart& part);

/// What a plug-in is meant to get wrong in any session.
struct KnownIssues {
  YAML::Node list;
  std::vector<KnownIssue> issues;
};

/// Reads a file with the key `known issues`, as a session has it. Without a name there are none.
/// Throws `SessionFileError`.
KnownIssues LoadKnownIssues(const std::string& file);

/// Has the session accept these as well, and its text say so. `issues` outlives the session.
void AddKnownIssues(const KnownIssues& issues, Session& session);

/// Returns the text of a session file, with the steps at its end. `comment` comes first, line by
/// line.
std::string WriteSession(const YAML::Node& session, const std::string& comment);

/// Returns a copy with a step, as YAML, put before all others.
YAML::Node WithFirstStep(const YAML::Node& session, const std::string& step);

}  // namespace host
