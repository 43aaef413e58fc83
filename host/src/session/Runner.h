#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "Session.h"

namespace host {

struct RunOptions {
  std::filesystem::path plugin;       ///< absolute
  std::filesystem::path fontManager;  ///< absolute, or empty for none
  bool quiet = false;                 ///< print only the sessions that fail
};

/// Plays the session in a process of its own and prints its timeline, unless quiet. Returns its
/// failures. Throws `std::runtime_error` if the session can't be set up.
std::vector<std::string> PlaySession(const Session& session, const RunOptions& options);
/// Prints the failures and the result.
void PrintResult(const Session& session, const RunOptions& options,
                 const std::vector<std::string>& failures);

}  // namespace host
