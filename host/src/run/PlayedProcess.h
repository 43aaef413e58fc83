#pragma once

#include <sys/types.h>

#include <string>
#include <string_view>
#include <vector>

#include "FlightRecord.h"
#include "Janitor.h"
#include "Judge.h"
#include "Player.h"
#include "Runner.h"

namespace host {

/// A session that is being played in a process of its own, seen from the process that waits.
class PlayedProcess {
 public:
  /// `folder` is the session folder. All arguments outlive this object. Throws `std::runtime_error`
  /// if there is no memory.
  PlayedProcess(const Session& session, const RunOptions& options, std::filesystem::path folder,
                Janitor& janitor);
  /// Ends the process, and those that the plug-in left behind.
  ~PlayedProcess();
  PlayedProcess(const PlayedProcess&) = delete;
  PlayedProcess& operator=(const PlayedProcess&) = delete;

  /// Forks, with what streams hold that aren't flushed. Returns true in the new process, which
  /// plays the session with `setup` and `flight` and never destroys its copy of this object. Throws
  /// `std::runtime_error` if it can't.
  bool fork();
  PlayerSetup setup() const { return {mOptions, mFolder, mPipe}; }
  FlightRecord& flight() const { return *mFlight; }

  /// The descriptor that becomes readable when there is something to take in. Negative if there is
  /// none.
  int awaited() const { return mPipeIsClosed ? mEnd : mPipe; }
  /// Takes in what the process has reported, and ends it if the plug-in hangs. Returns false when
  /// the process has ended. Throws `std::runtime_error` if the plug-in's module can't be loaded.
  bool update();
  /// Returns the events since the last call.
  std::vector<Event> takeEvents();
  /// What came of the session, once `update` has returned false.
  Played result();

 private:
  /// Returns false if the process can't report any more.
  bool readReports();
  void endIfHanging();
  void closeDescriptors();
  void take(Event event);
  void addRestOf(const char* file, off_t taken, std::string (*describe)(std::string_view));
  void addOutput(std::string text);
  /// Returns the name of the innermost hook that has begun, or an empty one.
  std::string runningHook() const;
  /// Returns the text with the paths of the session folder from there on.
  std::string withoutFolder(std::string text) const;
  void endRunning();
  void addHowItEnded(int status);
  /// Adds the fact that the process didn't end as it should. The place comes between the texts.
  void addEnd(Finding finding, std::string what, const std::string& how);
  std::string where() const;

  const Session& mSession;
  const RunOptions& mOptions;
  const std::filesystem::path mFolder;
  Janitor& mJanitor;
  SharedFlightRecord mFlight;
  pid_t mProcess = -1;
  int mPipe = -1;              ///< the end for reading; in the new process, the end for writing
  bool mPipeIsClosed = false;  ///< at the other end
  int mEnd = -1;               ///< becomes readable when the process ends
  int mCrashReport = -1;
  std::string mUnread;  ///< bytes of the pipe that aren't a whole event
  std::vector<Event> mEvents;
  std::vector<Event> mRunning;  ///< begins of hooks and dialogs that still run
  Judge mJudge;
  bool mOver = false;  ///< the session ended, played or not
  bool mFinished = false;
  int64_t mAskedToEnd = 0;  ///< when a hang was noticed; 0 if none was
};

}  // namespace host
