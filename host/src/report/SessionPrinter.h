#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "RunListener.h"
#include "Transcript.h"

namespace host {

/// What is printed of a session.
enum class Detail {
  everything,
  failures,  ///< only if it fails
  /// Only what was found, at the end of the run, with the sessions in which it was. Then what the
  /// plug-in uses of the host, from the calls that the sessions show.
  validation,
};

/// Prints sessions to standard output, and keeps account of those that failed.
class SessionPrinter final : public RunListener {
 public:
  explicit SessionPrinter(Detail detail);
  void begin(const SessionInfo& session) override;
  void take(const Event& event) override;
  void end(const SessionInfo& session, const Played& played) override;
  /// Prints the outcome of the run. Returns whether every session passed.
  bool printOutcome() const;

 private:
  using Names = std::set<std::string>;
  struct Group {
    std::string what;
    Event found;  ///< the first
    std::vector<std::string> sessions;
  };

  /// Prints what is certain by now, unless it waits for the end.
  void printNow();
  void takeCall(const Event& event);
  void group(const SessionInfo& session, const Played& played);
  void printFindings() const;
  void printUsage() const;

  Detail mDetail;
  size_t mCount = 0;
  bool mPrinted = false;  ///< a session
  Transcript mTranscript;
  std::vector<std::string> mFailed;

  // For a validation.
  std::vector<Group> mGroups;
  Names mHooks;
  Names mMenuItems;
  Names mSuites;
  Names mMissingSuites;
  Names mUnsupplied;  ///< functions
  Names mFunctions;
  int64_t mCalls = 0;
};

}  // namespace host
