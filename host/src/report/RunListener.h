#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "Event.h"
#include "Findings.h"

namespace host {

/// What is known of a session before it is played.
struct SessionInfo {
  std::string name;
  std::string file;
  std::string about;
  size_t stepCount = 0;  ///< with the first start and the last quit
};

/// What a session finds wrong.
struct FoundInSession {
  Finding finding = Finding::expectation;
  std::string text;  ///< may have several lines
  EventHead head;    ///< of the moment in which it came up
};

/// A call that could have failed.
struct CountedCall {
  std::string function;  ///< of the host, or an operation of a framework
  int64_t number = 0;    ///< among the calls of the function, from 1
  int64_t entry = 0;     ///< the call of the plug-in by the host during which it came, from 1
  int64_t inEntry = 0;   ///< the number among the function's calls during that one, from 1
};

/// What went wrong in a trial of a session.
struct FoundInTrial {
  size_t trial = 0;  ///< the place among the session's trials
  FoundInSession found;
};

/// What came of a session.
struct Played {
  std::vector<FoundInSession> findings;  ///< without those that are allowed
  bool complete = false;                 ///< every step was played
  bool failed = false;
  std::filesystem::path folder;      ///< where it was kept; empty otherwise
  std::vector<CountedCall> calls;    ///< if the session counts them
  std::vector<FoundInTrial> trials;  ///< those that went wrong
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
