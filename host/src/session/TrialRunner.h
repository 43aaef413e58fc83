#pragma once

#include <cstddef>
#include <filesystem>
#include <vector>

#include "Session.h"

namespace host {

struct RunOptions;

/// Plays the trials of a session while the session itself is played. When the point comes at which
/// a trial begins, it forks the process: the new one plays the session to its end, with one thing
/// going wrong. This one waits, puts the session folder back in order, and reports what the other
/// has found.
class TrialRunner {
 public:
  /// The arguments outlive this object, and it outlives the last call of the plug-in. Throws
  /// `std::runtime_error` from the host's calls of the plug-in if a process can't be made.
  TrialRunner(const Session& session, const RunOptions& options, std::filesystem::path folder,
              Host& host);
  TrialRunner(const TrialRunner&) = delete;
  TrialRunner& operator=(const TrialRunner&) = delete;

  /// Reports it if this process plays a trial whose call hasn't come. To be called before the
  /// session settles, and after its last step.
  void checkCallHasCome();

 private:
  void playDue();
  bool play(size_t trial);

  const Session& mSession;
  const RunOptions& mOptions;
  const std::filesystem::path mFolder;
  Host& mHost;
  std::vector<Trial> mTrials;
  size_t mNext = 0;                ///< the first trial that hasn't begun
  const Trial* mPlayed = nullptr;  ///< by this process, and not checked yet
};

}  // namespace host
