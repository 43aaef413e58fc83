#pragma once

#include <yaml-cpp/yaml.h>

#include <cstddef>
#include <deque>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "RunListener.h"
#include "Runner.h"
#include "Session.h"

namespace host {

/// A session that failed, which nobody wrote by hand.
struct Failure {
  std::string title;
  std::vector<Event> findings;
  YAML::Node session;  ///< repeats it
};

/// Prints failures as they come, with the sessions that repeat them.
class FailurePrinter {
 public:
  /// Writes each session to the folder `save` too, unless it is empty.
  explicit FailurePrinter(std::filesystem::path save) : mSave(std::move(save)) {}
  /// Throws `std::runtime_error` if the session can't be written.
  void print(const Failure& failure);
  size_t count() const { return mCount; }

 private:
  std::filesystem::path mSave;
  size_t mCount = 0;
};

/// What came of a sweep or of random sessions.
struct Explored {
  std::string outcome;  ///< what was played, for the user
  int signal = 0;       ///< that ended it, or 0
};

/// Plays sessions that are made when their turn comes, and shows how far it is.
class Trials final : public RunListener {
 public:
  using Ended = std::function<void(const Session&, const Played&)>;

  /// Calls `ended` when a session is over, in their order. The progress says `what`, such as
  /// "playing", and that there are at most `count`.
  Trials(std::string what, size_t count, Ended ended)
      : mWhat(std::move(what)), mMax(count), mEnded(std::move(ended)) {}
  /// Plays as `PlaySessions` does. `listeners` hear of a session before `ended` does.
  int play(const NextSession& next, const RunOptions& options,
           std::vector<RunListener*> listeners = {});
  /// How many sessions are over.
  size_t count() const { return mCount; }

  void begin(const SessionInfo& session) override;
  void end(const SessionInfo& session, const Played& played) override;
  void finish() override;

 private:
  std::string mWhat;
  size_t mMax;
  Ended mEnded;
  std::deque<std::shared_ptr<const Session>> mBegun;
  size_t mCount = 0;
};

}  // namespace host
