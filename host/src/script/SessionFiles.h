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

/// Reads a file with the key `known issues`, as a session has it. They are those of every session.
/// Throws `SessionFileError`.
std::vector<KnownIssue> LoadKnownIssues(const std::string& file);

/// Returns the text of a session file. `comment` comes first.
std::string WriteSession(const YAML::Node& session, const std::string& comment);

}  // namespace host
