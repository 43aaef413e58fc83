#pragma once

#include <vector>

#include "Host.h"
#include "Operations.h"
#include "SessionPart.h"
#include "YamlValue.h"

// What the framework has written to its journal in the session that this process plays, and what it
// is to answer.

namespace host {

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
