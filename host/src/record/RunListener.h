#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "Event.h"

namespace host {

/// What is known of a session before it is played.
struct SessionInfo {
  std::string name;
  std::string file;
  std::string about;
  size_t stepCount = 0;  ///< with the first start and the last quit
};

/// What came of a session.
struct Played {
  /// What is wrong, each with the moment in which it came up first. Without what is allowed.
  std::vector<Event> findings;
  bool complete = false;         ///< every step was played
  bool hasErrors = false;        ///< among the findings; with --strict a warning is one
  bool failed = false;           ///< has errors, or isn't complete
  std::filesystem::path folder;  ///< where it was kept; empty otherwise
};

/// Hears of sessions while they are played, of one after the other in their order. May throw, which
/// ends the run.
class RunListener {
 public:
  RunListener() = default;
  virtual ~RunListener() = default;
  RunListener(const RunListener&) = delete;
  RunListener& operator=(const RunListener&) = delete;

  virtual void begin(const SessionInfo& /*session*/) {}
  virtual void take(const Event& /*event*/) {}
  virtual void end(const SessionInfo& session, const Played& played) = 0;
  /// Hears that the run is over, early or not.
  virtual void finish() {}
};

}  // namespace host
