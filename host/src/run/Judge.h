#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "Event.h"
#include "Findings.h"
#include "RunListener.h"

namespace host {

/// What a session and the command line say about facts.
struct JudgeRules {
  std::vector<KnownIssue> knownIssues;
  std::set<Finding> allowed;  ///< findings that don't count
  bool tolerant = false;
  bool strict = false;  ///< warnings count as errors
};

/// Decides which facts of a session are findings: not those that are known issues, that the user
/// allows, that an `expect` names or, in a tolerant session, that an error which the host has
/// answered may have caused. Knows only the facts.
class Judge {
 public:
  explicit Judge(JudgeRules rules) : mRules(std::move(rules)) {}

  /// Takes the next fact. Returns what a reader of the timeline sees of it, in order: an event that
  /// is no fact as it is, and the verdicts that are known by now.
  std::vector<Event> take(Event event);
  /// Whether the process has told everything.
  bool isFinished() const { return mFinished; }
  /// Returns the verdict, without the folder. To be called once, after the last fact.
  Played finish();

 private:
  struct Found {
    Event fact;  ///< the first of those that are alike
    int64_t count = 1;
  };

  std::vector<Event> takeFact(Event fact);
  std::vector<Event> takeExpectation(Event expectation);
  /// Takes the pending facts that the key is about, in a tolerant session only those that are
  /// expected. Returns their names.
  std::vector<std::string> takeNamed(const std::string& key,
                                     const std::vector<std::string>& expected);
  bool holds(const KnownIssue& issue) const;
  const KnownIssue* knownIssueOf(const Event& fact) const;
  void findNeverCame();
  bool isExcused(const Event& fact) const;
  /// Makes a finding of the fact. One that is another's like counts with it.
  void addFinding(Event fact);

  JudgeRules mRules;
  std::set<const KnownIssue*> mNeeded;
  std::set<std::string> mFailed;  ///< calls that failed because the session wants it
  int64_t mVisit = -1;            ///< of the latest answers
  std::set<int64_t> mAnswered;    ///< errors during that visit
  std::vector<Event> mPending;    ///< facts that an `expect` may still name
  std::vector<Found> mFound;
  bool mPlayed = false;
  bool mFinished = false;
};

}  // namespace host
