#include <fmt/format.h>

#include <utility>

#include "Backtrace.h"
#include "Host.h"
#include "TextFile.h"

// What the host tells the process that waits, which decides what is a finding.

namespace host {
namespace {

Actor ActorOf(Finding finding) {
  const bool isOfSession = finding == Finding::expectation || finding == Finding::setup;
  return isOfSession ? Actor::session : Actor::plugIn;
}

const char* NameOfHook(const FlightRecord& flight) {
  const char* const hook = flight.hook;
  return *hook ? hook : "host itself";
}

}  // namespace

std::string Host::where() const {
  return fmt::format("in the {}, tick {}, host call {}, step {}", NameOfHook(*mFlight),
                     timeline.tick, mFlight->hostCall[0] ? mFlight->hostCall.data() : "none",
                     mFlight->step.data());
}

void Host::report(Finding finding, std::string text, FactNames names, std::string where,
                  int64_t code) {
  Event fact(timeline.head(ActorOf(finding)));
  fact.kind = EventKind::fact;
  fact.finding = finding;
  fact.text = std::move(text);
  fact.names = std::move(names);
  fact.where = where.empty() ? this->where() : std::move(where);
  fact.code = code;
  fact.visit = mVisit;
  timeline.addFact(std::move(fact));
}

void Host::expectFacts(const std::string& key, const std::string& place,
                       std::vector<std::string> texts) {
  Event expect(timeline.head(Actor::session));
  expect.kind = EventKind::expect;
  expect.name = key;
  expect.where = place;
  expect.texts = std::move(texts);
  timeline.addFact(std::move(expect));
}

void Host::countFailure(std::string_view function) {
  ++failures;
  Event failure(timeline.head(Actor::session));
  failure.kind = EventKind::failure;
  failure.name = function;
  mWire.send(failure);
}

void Host::countAnswer(A_Err error) {
  // Nobody else excuses what an answer may have caused.
  if (!mSettings.tolerant) return;
  Event answer(timeline.head(Actor::host));
  answer.kind = EventKind::answer;
  answer.code = error;
  answer.visit = mVisit;
  mWire.send(answer);
}

void Host::showCall(const RunningCall& running, A_Err result, bool isSupplied) {
  if (mSettings.showsCalls) timeline.addCall(running, result, isSupplied);
}

bool Host::refusesMoreHooks() {
  constexpr int kMaxDepth = 100;
  if (mNestsTooDeep) return true;
  if (mDepth < kMaxDepth) return false;
  mNestsTooDeep = true;
  misused(Finding::nestedTooDeep,
          fmt::format("{} calls of hooks are under way, each within the one before", kMaxDepth));
  return true;
}

A_Err Host::misused(Finding finding, std::string_view what, std::string detail) {
  const std::string function(timeline.call->function);
  // On one line, whatever the plug-in passed.
  report(finding, fmt::format("{}: {}", function, EscapeControls(what)),
         {function, std::move(detail), {}});
  return KindOf(finding).level == Level::error ? A_Err_GENERIC : A_Err_NONE;
}

A_Err Host::reportFromOtherThread(const void* suite, std::string_view function) const {
  // Only what is the same for all threads, or may be read by any.
  Event fact(HeadForThread(*mFlight));
  fact.kind = EventKind::fact;
  fact.finding = Finding::wrongThread;
  fact.names.function = function;
  fact.text = fmt::format("{} of {}: called from another thread", function, NameOfSuite(suite));
  fact.where =
      fmt::format("while the main thread was in the {}, tick {}", NameOfHook(*mFlight), fact.tick);
  for (const std::string& frame : Backtrace()) fact.where += "\n    " + frame;
  mWire.send(fact);
  return PF_Err_BAD_CALLBACK_PARAM;
}

void Host::reportLeaks() {
  bool isClean = true;
  const auto reportLeak = [&](Finding finding, const std::string& what, const Origin& origin) {
    isClean = false;
    report(finding, fmt::format("{} is left, from {}", what, origin.text()),
           {origin.function, what, {}}, "at the end of the process");
  };
  for (const auto& [suite, origin] : ledger.held(Holding::suite)) {
    reportLeak(Finding::suiteLeaked, NameOfSuite(suite), origin);
  }
  for (const auto& [thing, origin] : ledger.held(Holding::memoryHandle)) {
    reportLeak(Finding::handleLeaked,
               memory.at(thing).locks > 0 ? "a locked memory handle" : "a memory handle", origin);
  }
  for (const auto& [block, origin] : ledger.held(Holding::block)) {
    reportLeak(Finding::blockLeaked, "a block", origin);
  }
  if (!isClean) return;
  timeline.add(Actor::host,
               fmt::format("is gone; all {} suites acquired were released, no handle and no lock "
                           "is left",
                           ledger.suitesGiven()));
}

void Host::noteOnce(Actor actor, const std::string& text) {
  if (mNotes.insert(text).second) timeline.add(actor, text);
}

}  // namespace host
