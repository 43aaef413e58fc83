#pragma once

#include <yaml-cpp/yaml.h>

#include <filesystem>
#include <vector>

#include "Session.h"
#include "SessionPart.h"
#include "YamlValue.h"

namespace host {

/// Reads the value of a session's key `accepted`. `part` knows the calls that aren't the host's.
/// Throws `SessionFileError`.
std::vector<Acceptance> ReadAcceptances(const YamlValue& list, const SessionPart& part);

/// What a plug-in is meant to get wrong in any session.
struct KnownIssues {
  YAML::Node list;
  std::vector<Acceptance> accepted;
};

/// Reads a file with the key `accepted`, as a session has it. Throws `SessionFileError`.
KnownIssues LoadKnownIssues(const std::filesystem::path& file, const SessionPart& part);

/// Has the session accept these as well, and its text say so. `issues` outlives the session.
void Accept(const KnownIssues& issues, Session& session);

}  // namespace host
