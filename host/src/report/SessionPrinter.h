#pragma once

#include <unistd.h>

#include <cstddef>
#include <string>
#include <vector>

#include "RunListener.h"
#include "Transcript.h"

namespace host {

/// What is printed of a session.
enum class Detail {
  everything,
  failures,  ///< only if it fails
  findings,  ///< only what was found, at the end, with the sessions in which it was
};

/// Prints sessions to standard output, and keeps account of those that failed.
class SessionPrinter final : public RunListener {
 public:
  explicit SessionPrinter(Detail detail)
      : mDetail(detail), mTranscript(WantsColour(STDOUT_FILENO)) {}

  void begin(const SessionInfo& session) override;
  void take(const Event& event) override;
  void end(const SessionInfo& session, const Played& played) override;
  /// Prints what was found, if nothing else was printed of the sessions.
  void printFindings() const;
  /// Prints the outcome of the run. Returns whether every session passed.
  bool printOutcome() const;

 private:
  struct Group {
    std::string what;
    Event found;  ///< the first
    std::vector<std::string> sessions;
  };

  void print(const std::string& text);
  void group(const SessionInfo& session, const Played& played);

  Detail mDetail;
  size_t mCount = 0;
  bool mPrinted = false;  ///< a session
  Transcript mTranscript;
  std::string mKept;  ///< the text of the session, in case that it is printed at its end
  std::vector<Group> mGroups;
  std::vector<std::string> mFailed;
};

}  // namespace host
