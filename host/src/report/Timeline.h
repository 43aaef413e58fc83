#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "FlightRecord.h"
#include "Reporter.h"
#include "TextFile.h"

// The events of a session in order: as lines for a reader, and as a record for the expectations.

namespace host {

enum class Actor { user, host, plugIn, framework, desktop, session };

/// The names of the files in the session folder that take the output of the process.
inline constexpr char kStdoutFile[] = ".stdout";
inline constexpr char kStderrFile[] = ".stderr";

/// Returns a line of the timeline, with control characters escaped. `tick` is empty for a line that
/// belongs to the same tick as the one before.
std::string TimelineLine(std::string_view tick, Actor actor, std::string_view text);
/// Returns the text for a line that the plug-in wrote to its standard output or error.
std::string StdoutText(std::string_view line);
std::string StderrText(std::string_view line);

/// An event that a session has to expect.
struct Noted {
  std::string text;
  std::string where;  ///< for a finding, in case that it isn't expected
};

/// The events since an expectation last took them.
struct Record {
  std::vector<std::string> dialogsShown;  ///< titles of the dialogs that reached the user
  std::vector<Noted> errors;              ///< as "idle hook 1", shown to the user
  std::vector<Noted> reports;             ///< texts of `AEGP_ReportInfo`
  std::vector<Noted> notSupplied;         ///< functions of the host that it doesn't supply
  std::vector<std::string> activated;     ///< applications that the plug-in brought to the front
  std::vector<std::string> findings;      ///< names of the misuses of the host
  std::vector<std::string> stdoutLines;
  std::vector<std::string> stderrLines;
  int64_t fontUpdates = 0;
};

/// Collects entries. Before each one it takes in what the plug-in and others have written since, so
/// that the order is right.
class Timeline {
 public:
  /// Sends entries to `reporter`. Redirects the standard output and error of this process into the
  /// timeline. The working directory must be the session folder. `flight` is told how much was
  /// taken in.
  void begin(const Reporter& reporter, FlightRecord& flight);
  /// Has `source` add its own entries each time the timeline takes in what was written.
  void addSource(std::function<void()> source) { mSources.push_back(std::move(source)); }
  /// Tells another record from now on.
  void moveTo(FlightRecord& flight) { mFlight = &flight; }
  void add(Actor actor, std::string_view text);
  /// Takes in what was written. Cheap if there is nothing new.
  void drain();
  /// Does the same, and takes in unfinished lines of the plug-in's too.
  void drainRest();
  /// Adds an entry without taking in anything first. For sources.
  void show(Actor actor, std::string text);
  /// Makes paths in the session folder relative to it.
  void shortenPaths(std::string& text) const { ReplaceAll(text, mFolderPrefix, ""); }

  int64_t tick = 0;  ///< 0 before the first idle tick
  Record record;

 private:
  void takeStdoutLine(const std::string& line);
  void takeStderrLine(const std::string& line);

  const Reporter* mReporter = nullptr;
  FlightRecord* mFlight = nullptr;
  int64_t mLastShownTick = -1;
  std::string mFolderPrefix;
  GrowingFile mStdout;
  GrowingFile mStderr;
  std::vector<std::function<void()>> mSources;
};

}  // namespace host
