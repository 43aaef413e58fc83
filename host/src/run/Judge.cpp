#include "Judge.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <utility>

#include "TextFile.h"

namespace host {
namespace {

// Of one kind, where those that are alike count once. A plug-in repeats its mistakes.
constexpr ptrdiff_t kMaxFindings = 100;

Event MakeEntry(EventHead head, Actor actor, std::string text) {
  Event entry(EventKind::entry, std::move(head));
  entry.actor = actor;
  entry.text = std::move(text);
  return entry;
}

// Makes a fact of the session's own.
Event MakeFact(EventHead head, Finding finding, std::string text) {
  Event fact(EventKind::fact, std::move(head));
  fact.actor = Actor::session;
  fact.name = KindOf(finding).name;
  fact.text = std::move(text);
  return fact;
}

std::string FirstLine(const std::string& text) {
  return text.substr(0, text.find('\n'));
}

bool Fits(const std::string& wanted, const std::string& name) {
  return wanted.empty() || wanted == name;
}

}  // namespace

std::vector<Event> Judge::take(Event event) {
  switch (event.kind) {
    case EventKind::fact:
      return takeFact(std::move(event));
    case EventKind::expectation:
      return takeExpectation(std::move(event));
    case EventKind::answer:
      if (std::exchange(mVisit, event.visit) != event.visit) mAnswered.clear();
      mAnswered.insert(*event.result);
      return {};
    case EventKind::failure:
      mFailed.insert(event.text);
      return {};
    case EventKind::played:
      mPlayed = true;
      return {};
    case EventKind::finished:
      mFinished = true;
      return {};
    default:
      break;
  }
  return {std::move(event)};
}

std::vector<Event> Judge::takeFact(Event fact) {
  const FindingKind& kind = KindOf(fact);
  if (const KnownIssue* const issue = knownIssueOf(fact)) {
    mNeeded.insert(issue);
    return {MakeEntry(fact, Actor::session,
                      fmt::format("known issue {}: {}", kind.name, issue->reason))};
  }
  std::vector<Event> shown;
  if (kind.isMisuse()) {
    shown.push_back(
        MakeEntry(fact, Actor::host, fmt::format("finds {}: {}", kind.name, FirstLine(fact.text))));
  }
  if (isExcused(fact)) return shown;
  if (!kind.expectKey.empty()) {
    mPending.push_back(std::move(fact));
  } else {
    addFinding(std::move(fact));
  }
  return shown;
}

std::vector<Event> Judge::takeExpectation(Event expectation) {
  if (expectation.texts) {
    const std::vector<std::string> found = takeNamed(expectation.name, *expectation.texts);
    if (mRules.tolerant) return {};
    expectation.difference = CompareLists(*expectation.texts, found);
    expectation.texts.reset();
  }
  const bool isMet = expectation.isMet();
  expectation.text =
      fmt::format("{}: {}", isMet ? "as expected" : "NOT as expected", expectation.name);
  if (!isMet) {
    Event fact = MakeFact(
        expectation, Finding::expectation,
        fmt::format("{}: {}\n{}", expectation.where, expectation.name, expectation.difference));
    // Each is a finding of its own.
    fact.detail = fact.text;
    addFinding(std::move(fact));
  }
  return {std::move(expectation)};
}

std::vector<std::string> Judge::takeNamed(const std::string& key,
                                          const std::vector<std::string>& expected) {
  std::vector<std::string> found;
  std::erase_if(mPending, [&](const Event& fact) {
    if (KindOf(fact).expectKey != key) return false;
    found.push_back(KindOf(fact).isMisuse() ? fact.name : fact.value);
    return !mRules.tolerant ||
           std::find(expected.begin(), expected.end(), found.back()) != expected.end();
  });
  return found;
}

bool Judge::holds(const KnownIssue& issue) const {
  return issue.after.empty() ||
         std::any_of(issue.after.begin(), issue.after.end(),
                     [&](const std::string& call) { return mFailed.contains(call); });
}

const KnownIssue* Judge::knownIssueOf(const Event& fact) const {
  const auto fits = [&](const KnownIssue& each) {
    return each.finding == KindOf(fact).finding && Fits(each.function, fact.function) &&
           Fits(each.detail, fact.detail) && holds(each);
  };
  const auto found = std::find_if(mRules.knownIssues.begin(), mRules.knownIssues.end(), fits);
  return found == mRules.knownIssues.end() ? nullptr : &*found;
}

// A known issue of the session that never came says what isn't true any more.
void Judge::findNeverCame() {
  if (!mFinished || mRules.tolerant) return;
  for (const KnownIssue& each : mRules.knownIssues) {
    if (each.isOfEverySession || mNeeded.contains(&each) || !holds(each)) continue;
    addFinding(MakeFact({}, Finding::setup,
                        fmt::format("the known issue {} never came", KindOf(each.finding).name)));
  }
}

// Any error that the host has answered may cause a report to the user. An error that a hook returns
// has to be one that was answered.
bool Judge::isExcused(const Event& fact) const {
  if (!mRules.tolerant || !KindOf(fact).has(kExcusable) || fact.visit != mVisit) {
    return false;
  }
  return !fact.result || mAnswered.contains(*fact.result);
}

void Judge::addFinding(Event fact) {
  if (mRules.allowed.contains(KindOf(fact).finding)) return;
  FactNames& names = fact;
  // One without names is known by what happened.
  if (names == FactNames()) names.detail = FirstLine(fact.text);
  // Those that differ only in when and where they came up are alike.
  const auto same = std::find_if(mFound.begin(), mFound.end(), [&](const Found& found) {
    return found.fact.name == fact.name && found.fact.hook == fact.hook && names == found.fact;
  });
  if (same != mFound.end()) {
    ++same->count;
    return;
  }
  const ptrdiff_t before = std::count_if(mFound.begin(), mFound.end(), [&](const Found& found) {
    return found.fact.name == fact.name;
  });
  if (before == kMaxFindings) return;
  if (before + 1 == kMaxFindings) fact.text += "\n    no more of this kind are told";
  mFound.push_back({std::move(fact)});
}

Played Judge::finish() {
  for (Event& fact : mPending) {
    // What a later step might have expected says nothing if the session was cut short. A misuse may
    // be the reason why.
    if (mFinished || KindOf(fact).isMisuse()) addFinding(std::move(fact));
  }
  findNeverCame();
  std::stable_partition(mFound.begin(), mFound.end(),
                        [](const Found& found) { return !KindOf(found.fact).has(kFollows); });
  Played played;
  for (const auto& [fact, count] : mFound) {
    Event& finding = played.findings.emplace_back(EventKind::finding, fact);
    finding.name = fact.name;
    finding.text = fact.text;
    if (count > 1) {
      finding.text += fmt::format("\n    {} times, first at tick {}", count, fact.tick);
    }
    const bool isError = KindOf(fact).level == Level::error;
    played.hasErrors = played.hasErrors || isError || mRules.strict;
  }
  played.complete = mPlayed;
  played.failed = !mPlayed || played.hasErrors;
  return played;
}

}  // namespace host
