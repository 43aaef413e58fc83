#pragma once

#include <string>
#include <vector>

#include "SessionPart.h"

namespace host {

/// Keeps the sessions whose name the regular expression finds. Throws `SessionFileError` if there
/// is none, or the expression is wrong.
std::vector<Session> FilterSessions(std::vector<Session> sessions, const std::string& expression);

/// Reads the sessions of all files, and keeps those whose name the expression finds. A name that
/// two files have gets the folder in front. Throws one `SessionFileError` with all faults of all
/// files.
std::vector<Session> LoadSelected(const std::vector<std::string>& names, const std::string& filter,
                                  const SessionPart& part);

}  // namespace host
