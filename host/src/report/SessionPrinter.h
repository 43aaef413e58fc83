#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "RunListener.h"
#include "Transcript.h"

namespace host {

/// Prints what happens in the sessions to standard output, and keeps account of those that failed.
class SessionPrinter final : public RunListener {
 public:
  /// `quiet` prints only the sessions that fail. `count` is how many are to be played.
  SessionPrinter(bool quiet, size_t count);

  void begin(const SessionInfo& session) override;
  void take(const Event& event) override;
  void end(const SessionInfo& session, const Played& played) override;
  /// Prints the outcome of the run. Returns whether every session passed.
  bool printOutcome() const;

 private:
  void print(const std::string& text);

  bool mQuiet;
  size_t mCount;
  size_t mNumber = 0;
  bool mPrinted = false;
  Transcript mTranscript;
  std::string mKept;  ///< the text of the session, in case that it fails
  std::vector<std::string> mFailed;
};

/// Prints one line for each session, and below it what was found.
class VerdictPrinter final : public RunListener {
 public:
  void end(const SessionInfo& session, const Played& played) override;
  /// Prints the outcome of the run. Returns whether every session passed.
  bool printOutcome() const;

 private:
  bool mFailed = false;
};

}  // namespace host
