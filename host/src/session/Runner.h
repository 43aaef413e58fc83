#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "Session.h"

namespace host {

struct RunOptions {
  std::filesystem::path plugin;       ///< absolute
  std::filesystem::path fontManager;  ///< absolute, or empty for none
  bool quiet = false;                 ///< print nothing of sessions that are as expected
};

/// Plays the session in a process of its own and, unless it has to be quiet, prints its timeline
/// meanwhile. Returns what fell short. Throws `std::runtime_error` when the session can't be set
/// up.
std::vector<std::string> PlaySession(const Session& session, const RunOptions& options);
/// Prints what fell short, and the result.
void PrintResult(const Session& session, const RunOptions& options,
                 const std::vector<std::string>& shortfalls);

}  // namespace host
