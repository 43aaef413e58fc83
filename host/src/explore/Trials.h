#pragma once

#include <yaml-cpp/yaml.h>

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "RunListener.h"

namespace host {

/// A session that failed, which nobody wrote by hand.
struct Failure {
  std::string title;
  std::vector<Event> findings;
  YAML::Node session;  ///< repeats it
};

/// What comes of a sweep or of random sessions: prints failures as they come, with the sessions
/// that repeat them.
class Failures {
 public:
  /// Writes each session to the folder `save` too, unless it is empty. Makes the folder at once,
  /// before anything is played, which can take minutes. Throws `std::runtime_error` if it can't.
  explicit Failures(std::filesystem::path save);
  /// Throws `std::runtime_error` if the session can't be written.
  void print(const Failure& failure);
  size_t count() const { return mCount; }
  /// Prints how many there are in what was played. Returns whether there are none.
  bool printOutcome(const std::string& played) const;

 private:
  std::filesystem::path mSave;
  size_t mCount = 0;
};

/// Counts sessions, and shows the progress.
class Trials final : public RunListener {
 public:
  /// Hears how a session ended, by its index in the order of the sessions.
  using Ended = std::function<void(size_t, const Played&)>;

  /// The progress says `what`, such as "playing", and that there are at most `max`.
  Trials(std::string what, size_t max, Ended ended)
      : mWhat(std::move(what)), mMax(max), mEnded(std::move(ended)) {}
  /// How many sessions are over.
  size_t count() const { return mCount; }

  void begin(const SessionInfo& session) override;
  void end(const SessionInfo& session, const Played& played) override;
  void finish() override;

 private:
  std::string mWhat;
  size_t mMax;
  Ended mEnded;
  size_t mCount = 0;
};

}  // namespace host
