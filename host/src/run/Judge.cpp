#include "Judge.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "Comparison.h"
#include "TextFile.h"

namespace host {
namespace {

// Of one kind, besides those that are alike. A plug-in that makes a mistake makes it again and
// again.
constexpr size_t kMaxFindings = 100;

Event MakeEntry(const Event& fact, Actor actor, std::string text) {
  Event entry{EventHead(fact)};
  entry.actor = actor;
  entry.text = std::move(text);
  return entry;
}

bool Fits(const std::string& wanted, const std::string& name) {
  return wanted.empty() || wanted == name;
}

}  // namespace

std::vector<Event> Judge::take(Event event) {
  switch (event.kind) {
    case EventKind::fact:
      return takeFact(std::move(event));
    case EventKind::expect:
      return takeExpect(event);
    case EventKind::expectation:
      if (!event.met) takeUnmet(event);
      break;
    case EventKind::answer:
      if (std::exchange(mVisit, event.visit) != event.visit) mAnswered.clear();
      mAnswered.insert(event.code);
      return {};
    case EventKind::failure:
      mFailed.insert(event.name);
      return {};
    case EventKind::played:
      mPlayed = true;
      return {};
    case EventKind::finished:
      mFinished = true;
      return {};
    case EventKind::unloadable:
    case EventKind::destroying:
      return {};
    default:
      break;
  }
  return {std::move(event)};
}

std::vector<Event> Judge::takeFact(Event fact) {
  const FindingKind& kind = KindOf(fact.finding);
  if (const KnownIssue* const issue = knownIssueOf(fact)) {
    mNeeded.insert(issue);
    return {
        MakeEntry(fact, Actor::session, fmt::format("accepts {}: {}", kind.name, issue->reason))};
  }
  std::vector<Event> shown;
  if (kind.expectKey == "findings") {
    shown.push_back(
        MakeEntry(fact, Actor::host, fmt::format("finds {}: {}", kind.name, fact.text)));
  }
  if (isExcused(fact)) return shown;
  if (!kind.expectKey.empty()) {
    mPending.push_back(std::move(fact));
  } else if (!mRules.allowed.contains(fact.finding)) {
    find(fact);
  }
  return shown;
}

void Judge::takeUnmet(const Event& expectation) {
  if (mRules.allowed.contains(Finding::expectation)) return;
  Event fact{EventHead(expectation)};
  fact.finding = Finding::expectation;
  fact.text =
      fmt::format("{}: {}\n{}", expectation.where, expectation.name, expectation.difference);
  fact.names.detail = fact.text;
  find(fact);
}

// Compares the facts that the key is about with those expected. A tolerant session takes out those
// that are expected, and leaves the rest.
std::vector<Event> Judge::takeExpect(const Event& expect) {
  std::vector<std::string> found;
  std::erase_if(mPending, [&](const Event& fact) {
    const FindingKind& kind = KindOf(fact.finding);
    if (kind.expectKey != expect.name) return false;
    found.push_back(kind.expectKey == "findings" ? std::string(kind.name) : fact.names.value);
    return !mRules.tolerant ||
           std::find(expect.texts.begin(), expect.texts.end(), found.back()) != expect.texts.end();
  });
  if (mRules.tolerant) return {};
  Event expectation{EventHead(expect)};
  expectation.kind = EventKind::expectation;
  expectation.name = expect.name;
  expectation.where = expect.where;
  expectation.difference = CompareLists(expect.texts, found);
  expectation.met = expectation.difference.empty();
  expectation.text = ExpectationText(expectation.name, expectation.met);
  return take(std::move(expectation));
}

bool Judge::holds(const KnownIssue& issue) const {
  return issue.after.empty() ||
         std::any_of(issue.after.begin(), issue.after.end(),
                     [&](const std::string& call) { return mFailed.contains(call); });
}

const KnownIssue* Judge::knownIssueOf(const Event& fact) const {
  const auto accepts = [&](const KnownIssue& each) {
    return each.finding == fact.finding && Fits(each.function, fact.names.function) &&
           Fits(each.detail, fact.names.detail) && holds(each);
  };
  const auto found = std::find_if(mRules.knownIssues.begin(), mRules.knownIssues.end(), accepts);
  return found == mRules.knownIssues.end() ? nullptr : &*found;
}

// A known issue that never came says what isn't true any more.
void Judge::findNeedlessIssues() {
  if (!mFinished || mRules.tolerant || mRules.allowed.contains(Finding::setup)) return;
  for (const KnownIssue& each : mRules.knownIssues) {
    if (mNeeded.contains(&each) || !holds(each)) continue;
    Event fact;
    fact.finding = Finding::setup;
    fact.text = fmt::format("the known issue {} never came", KindOf(each.finding).name);
    find(fact);
  }
}

// A report to the user may have any error as its cause, and an error that a hook returns the same
// error.
bool Judge::isExcused(const Event& fact) const {
  if (!mRules.tolerant || !KindOf(fact.finding).has(kExcusable) || fact.visit != mVisit) {
    return false;
  }
  return fact.code == 0 || mAnswered.contains(fact.code);
}

void Judge::find(const Event& fact) {
  const FactNames& names = fact.names;
  const bool hasName = !names.function.empty() || !names.detail.empty() || !names.value.empty();
  const auto [place, isNew] =
      mPlaces.try_emplace(Identity(fact.finding, names.function,
                                   hasName ? names.detail + names.value : fact.text, fact.hook),
                          mEntries.size());
  if (!isNew) {
    ++mEntries[place->second].count;
    return;
  }
  const size_t count = ++mCounts[fact.finding];
  if (count > kMaxFindings) {
    mPlaces.erase(place);
    return;
  }
  Entry entry{{fact.finding, fact.text, EventHead(fact)}, 1, fact.tick};
  if (!fact.where.empty()) entry.found.text += "\n    " + fact.where;
  if (count == kMaxFindings) entry.found.text += "\n    no more of this kind are told";
  mEntries.push_back(std::move(entry));
}

Played Judge::finish() {
  for (const Event& fact : std::exchange(mPending, {})) {
    // What a later step might have expected says nothing if the session was cut short. A misuse may
    // be the reason why.
    const bool counts = mFinished || KindOf(fact.finding).expectKey == "findings";
    if (counts && !mRules.allowed.contains(fact.finding)) find(fact);
  }
  findNeedlessIssues();
  std::stable_partition(mEntries.begin(), mEntries.end(), [](const Entry& entry) {
    return !KindOf(entry.found.finding).has(kFollows);
  });
  Played played;
  for (Entry& entry : mEntries) {
    if (entry.count > 1) {
      entry.found.text +=
          fmt::format("\n    {} times, first at tick {}", entry.count, entry.firstTick);
    }
    played.findings.push_back(std::move(entry.found));
  }
  played.complete = mPlayed;
  played.hasErrors =
      std::any_of(played.findings.begin(), played.findings.end(), [&](const FoundInSession& found) {
        return mRules.strict || KindOf(found.finding).level == Level::error;
      });
  played.failed = !mPlayed || played.hasErrors;
  return played;
}

}  // namespace host
