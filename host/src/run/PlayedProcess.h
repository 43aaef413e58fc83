#pragma once

#include <sys/types.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "FlightRecord.h"
#include "Judge.h"
#include "Runner.h"
#include "SessionFolder.h"
#include "Timeline.h"

namespace host {

/// A session that is being played in a process of its own, seen from the process that waits.
class PlayedProcess {
 public:
  /// Forks, with what streams hold that aren't flushed. `options` outlive this object. Throws
  /// `std::runtime_error` if it can't.
  PlayedProcess(std::shared_ptr<const Session> session, const RunOptions& options);
  /// Ends the process, and those that the plug-in left behind.
  ~PlayedProcess();
  PlayedProcess(const PlayedProcess&) = delete;
  PlayedProcess& operator=(const PlayedProcess&) = delete;

  const Session& session() const { return *mSession; }
  /// The descriptor that becomes readable when the process ends. Negative if the kernel has none.
  int end() const { return mEnd; }
  /// Takes in what the process has reported, and ends it if the plug-in hangs. Throws
  /// `std::runtime_error` if the plug-in's module can't be loaded.
  void update();
  /// Returns the events since the last call.
  std::vector<Event> takeEvents() { return std::exchange(mEvents, {}); }
  /// What came of the session, once the process has ended.
  const std::optional<Played>& result() const { return mResult; }

 private:
  void readReports();
  void endIfHanging();
  /// Ends what the process has left behind.
  void cleanUp();
  void take(Event event);
  void addRestOf(const Output& output, off_t taken);
  void addOutput(std::string text);
  /// Returns where the main thread was.
  EventHead headAtEnd() const;
  void endRunning();
  void addHowItEnded(int status);
  /// Adds the fact that the process didn't end as it should. The place comes between the texts.
  void addEnd(Finding finding, std::string what, const std::string& how);

  const std::shared_ptr<const Session> mSession;
  const RunOptions& mOptions;
  const SessionFolder mFolder;
  const std::shared_ptr<FlightRecord> mFlight;
  Judge mJudge;
  pid_t mProcess = -1;  ///< until it has ended
  int mPipe = -1;
  int mEnd = -1;
  int mWatch = -1;      ///< of the session folder
  std::string mUnread;  ///< bytes of the pipe that aren't a whole event
  std::vector<Event> mEvents;
  std::vector<Event> mRunning;  ///< begins of hooks and dialogs that still run
  int64_t mAskedToEnd = 0;      ///< when a hang was noticed; 0 if none was
  std::optional<Played> mResult;
};

}  // namespace host
