#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "Reporter.h"
#include "TextFile.h"

// The events of a session in order: as lines for a reader, and as a record for the expectations.

namespace host {

enum class Actor { user, host, plugIn, framework, desktop, session };

/// A framework call from the journal. Paths are relative to the session folder.
struct FrameworkCall {
  int64_t tick = 0;
  std::string operation;
  std::map<std::string, std::string> fields;  ///< arguments, out-arguments and `result`
  std::string text;                           ///< operation and fields for a reader
};

/// The events since an expectation last took them.
struct Record {
  std::vector<std::string> dialogsShown;  ///< titles of the dialogs that reached the user
  std::vector<std::string> errors;        ///< as "idle hook 1", shown to the user
  std::vector<std::string> reports;       ///< texts of `AEGP_ReportInfo`
  std::vector<std::string> notSupplied;   ///< functions of the host that it doesn't supply
  std::vector<std::string> activated;     ///< applications that the plug-in brought to the front
  std::vector<std::string> stdoutLines;
  std::vector<FrameworkCall> frameworkCalls;
  int64_t fontUpdates = 0;
};

/// Collects entries. Before each one it takes in what the framework and the plug-in have written
/// since, so that the order is right.
class Timeline {
 public:
  /// Sends entries to `reporter` if `shown`. Redirects the standard output of this process into the
  /// timeline and follows the journal. The working directory must be the session folder.
  void begin(const Reporter& reporter, bool shown);
  void add(Actor actor, std::string_view text);
  /// Takes in what the framework and the plug-in have written. Cheap if there is nothing new.
  void drain();
  /// Does the same, and takes in an unfinished line of the plug-in's too.
  void drainRest();

  int64_t tick = 0;  ///< 0 before the first idle tick
  /// The answers set up for the framework that no call has used, by operation.
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
