#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "ActivationRules.h"
#include "Event.h"
#include "Host.h"
#include "TextFile.h"

// What the framework writes to its journal, and what the plug-in's activation looks like from
// there.

namespace host {

/// A framework call from the journal. Paths are relative to the session folder.
struct FrameworkCall {
  int64_t tick = 0;
  std::string operation;
  std::vector<Argument> fields;  ///< arguments, out-arguments and `result`, in the journal's order
  std::string text;              ///< operation and fields for a reader
};

/// The answers that no call has used.
class AnswersLeft {
 public:
  /// `call` is the number of the call that the answer is for, or 0 for the next one. A fault is an
  /// answer that isn't a user's.
  void add(const std::string& operation, int64_t call, bool isFault) {
    if (call > 0) {
      mOfCalls.insert({operation, call});
    } else {
      mNext[operation].push_back(isFault);
    }
  }
  /// Returns whether the call gets a fault.
  bool take(const std::string& operation, int64_t call) {
    bool isFault = mOfCalls.erase({operation, call}) > 0;
    if (std::deque<bool>& next = mNext[operation]; !next.empty()) {
      isFault = isFault || next.front();
      next.pop_front();
    }
    return isFault;
  }
  bool awaitCall() const { return !mOfCalls.empty(); }
  /// How many there are by operation.
  std::map<std::string, size_t> counts() const {
    std::map<std::string, size_t> counts;
    for (const auto& [operation, next] : mNext) counts[operation] += next.size();
    for (const auto& [operation, call] : mOfCalls) ++counts[operation];
    return counts;
  }

 private:
  std::map<std::string, std::deque<bool>> mNext;
  std::set<std::pair<std::string, int64_t>> mOfCalls;
};

/// What the framework has written in the session that this process plays.
struct FrameworkLog {
  GrowingFile journal;
  std::vector<FrameworkCall> calls;          ///< since an expectation last took them
  std::map<std::string, int64_t> callCount;  ///< by operation
  AnswersLeft answersLeft;
  ActivationRules rules;
  std::optional<int64_t> activationBegan;  ///< tick of the activation's step 1, while it runs
  bool enabled = true;                     ///< what the framework last said
};

/// Returns the log of this process. It is never destroyed, like the host that uses it.
FrameworkLog& TheFrameworkLog();

/// Has the timeline take in what the framework writes from now on. Throws `std::runtime_error` if
/// the journal can't be opened.
void FollowJournal(Host& host);
/// Lets everything work again, with the framework's own answers, and looks at what became of an
/// activation.
void Settle(Host& host);
/// Reports the answers that the session has set up and no call has asked for.
void CheckAnswersLeft(Host& host);

}  // namespace host
