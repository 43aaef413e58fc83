#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "Activation.h"
#include "Event.h"
#include "Host.h"
#include "Operations.h"
#include "SessionPart.h"
#include "TextFile.h"

namespace host {

/// A call of the framework. Paths are relative to the session folder.
struct FrameworkCall {
  int64_t tick = 0;
  Call call;         ///< its arguments, out-arguments and `result`, in the journal's order
  std::string text;  ///< the same for a reader
};

/// What the framework has written to its journal in the session that this process plays, and what
/// it is to answer.
struct FrameworkLog {
  GrowingFile journal;
  std::vector<FrameworkCall> calls;          ///< since an expectation last took them
  std::map<std::string, int64_t> callCount;  ///< by operation
  std::vector<Answer> answersLeft;           ///< that no call has used
  Activation activation;
};

/// Returns the log of this process. It is never destroyed, like the host that uses it.
FrameworkLog& TheFrameworkLog();

/// Has the timeline take in what the framework writes from now on. Throws `std::runtime_error` if
/// the journal can't be opened.
void FollowJournal(Host& host);
/// Has the framework give these answers.
void SetUpAnswers(const std::vector<Answer>& answers, Host& host);
/// Lets everything work again, with the framework's own answers, and looks at what became of an
/// activation.
void Settle(Host& host);
/// Reports the answers that the session has set up and no call has asked for.
void CheckAnswersLeft(Host& host);

/// Reads the calls of the framework that an `expect` expects. Throws `SessionFileError`.
Check ReadExpectedCalls(const YamlValue& value);

}  // namespace host
