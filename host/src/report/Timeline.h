#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "Reporter.h"
#include "TextFile.h"

// What happens in a session, in order: the lines that a person reads, and the record that the
// session's expectations look at.

namespace host {

enum class Actor { user, host, plugIn, framework, desktop, session };

/// A call of the framework, as its journal tells it. Paths are relative to the session folder.
struct FrameworkCall {
  int64_t tick = 0;
  std::string operation;
  std::map<std::string, std::string> fields;  ///< arguments, out-arguments and `result`
  std::string text;                           ///< operation and fields, to be read
};

/// What has come together since the session last looked at it.
struct Record {
  std::vector<std::string> dialogsShown;  ///< titles of the dialogs that reached the user
  std::vector<std::string> errors;        ///< hook and result, as shown to the user
  std::vector<std::string> reports;       ///< texts of `AEGP_ReportInfo`
  std::vector<std::string> notSupplied;   ///< functions of the host that it doesn't supply
  std::vector<std::string> activated;     ///< applications that the plug-in brought to the front
  std::vector<std::string> stdoutLines;
  std::vector<FrameworkCall> frameworkCalls;
  int64_t fontUpdates = 0;
};

/// Before each entry, what framework and plug-in have written meanwhile is taken in, so that the
/// order is true.
class Timeline {
 public:
  /// From now on entries go to `reporter` if `shown`. Sends what this process writes to its
  /// standard output into the timeline, and follows the journal in the session folder, which must
  /// be the working directory.
  void begin(const Reporter& reporter, bool shown);
  void add(Actor actor, std::string_view text);
  /// Takes in what framework and plug-in have written. Cheap when that is nothing.
  void drain();
  /// Takes in also what the plug-in wrote without ending the line.
  void drainRest();

  int64_t tick = 0;  ///< 0 before the first idle tick
  /// By operation, the answers set up for the framework for which no call has come.
  std::map<std::string, int64_t> answersLeft;
  Record record;

 private:
  void show(Actor actor, std::string text);
  void takeStdoutLine(const std::string& line);
  void takeJournalLine(const std::string& line);

  const Reporter* mReporter = nullptr;
  bool mShown = false;
  int64_t mLastShownTick = -1;
  std::string mFolderPrefix;
  GrowingFile mStdout;
  GrowingFile mJournal;
};

}  // namespace host
