#pragma once

#include <yaml-cpp/yaml.h>

#include <filesystem>
#include <vector>

#include "Session.h"
#include "SessionPart.h"
#include "YamlValue.h"

namespace host {

/// Reads the value of a session's key `known issues`. `part` knows the calls that aren't the
/// host's. Throws `SessionFileError`.
std::vector<KnownIssue> ReadKnownIssues(const YamlValue& list, const SessionPart& part);

/// What a plug-in is meant to get wrong in any session.
struct KnownIssues {
  YAML::Node list;
  std::vector<KnownIssue> issues;
};

/// Reads a file with the key `known issues`, as a session has it. Throws `SessionFileError`.
KnownIssues LoadKnownIssues(const std::filesystem::path& file, const SessionPart& part);

/// Has the session accept these as well, and its text say so. `issues` outlives the session.
void AddKnownIssues(const KnownIssues& issues, Session& session);

}  // namespace host
