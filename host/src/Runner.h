#pragma once

#include <filesystem>

#include "Session.h"

namespace host {

struct RunOptions {
  std::filesystem::path plugin;       ///< absolute
  std::filesystem::path fontManager;  ///< absolute, or empty for none
  bool quiet = false;                 ///< print nothing of sessions that are as expected
};

/// Plays the session in a process of its own and prints its timeline, what fell short, and its
/// result. Returns the verdict. Throws `std::runtime_error` when the session can't be set up.
bool RunSession(const Session& session, const RunOptions& options);

}  // namespace host
