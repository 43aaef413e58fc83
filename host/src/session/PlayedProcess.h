#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "FlightRecord.h"
#include "Janitor.h"
#include "Reporter.h"
#include "Runner.h"
#include "SessionFolder.h"

namespace host {

/// A session that is being played in a process of its own, seen from the process that waits.
class PlayedProcess {
 public:
  /// Sets the session up and begins to play it. All arguments outlive this object. Throws
  /// `std::runtime_error` if that can't be done.
  PlayedProcess(const Session& session, const RunOptions& options, Janitor& janitor);
  /// Ends the process, and those that the plug-in left behind.
  ~PlayedProcess();
  PlayedProcess(const PlayedProcess&) = delete;
  PlayedProcess& operator=(const PlayedProcess&) = delete;

  const Session& session() const { return mSession; }
  /// The descriptor that becomes readable when there is something to take in. Negative if there is
  /// none.
  int awaited() const { return mPipeIsClosed ? mEnd : mPipe; }
  /// Takes in what the process has reported, and ends it if the plug-in hangs. Returns false when
  /// the process has ended. Throws `std::runtime_error` if the plug-in's module can't be loaded.
  bool update();
  /// Begins the time limit of the call that is under way again. For when nobody took in what the
  /// process reports, so that it had to wait.
  void restartTimeLimit() { mTimeRunsSince = MonotonicNow(); }
  /// Returns the lines of the timeline since the last call.
  std::vector<std::string> takeLines();
  /// What came of the session, once `update` has returned false.
  Played result();

 private:
  void start();
  /// Returns false if the process can't report any more.
  bool readReports();
  void takeReport(const Report& report);
  void endIfHanging();
  void addRestOfOutput();
  void addHowItEnded(int status);
  std::string where() const;

  const Session& mSession;
  const RunOptions& mOptions;
  Janitor& mJanitor;
  SessionFolder mFolder;
  SharedFlightRecord mFlight;
  pid_t mProcess = -1;
  int mPipe = -1;
  bool mPipeIsClosed = false;  ///< at the other end
  int mEnd = -1;               ///< becomes readable when the process ends
  int mCrashReport = -1;
  std::string mUnread;  ///< bytes of the pipe that aren't a whole report
  std::vector<std::string> mLines;
  std::vector<FoundInSession> mFindings;
  std::vector<FoundInSession> mMisuses;  ///< that the session may still expect
  bool mPlayed = false;
  bool mOver = false;  ///< the session ended, played or not
  bool mEnded = false;
  int64_t mTimeRunsSince = 0;  ///< at the earliest, for a call of the plug-in
  int64_t mAskedToEnd = 0;     ///< when a hang was noticed; 0 if none was
};

}  // namespace host
