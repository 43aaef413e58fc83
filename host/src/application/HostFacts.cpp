#include <fmt/format.h>

#include <utility>

#include "Backtrace.h"
#include "Host.h"
#include "TextFile.h"

// What the host tells the process that waits, which decides what is a finding.

namespace host {
namespace {

const char* NameOfHook(const FlightRecord& flight) {
  const char* const hook = flight.hook;
  return *hook ? hook : "host itself";
}

}  // namespace

void Host::report(Finding finding, const std::string& text, FactNames names,
                  const std::string& where, int64_t code) {
  const Actor actor = finding == Finding::setup ? Actor::session : Actor::plugIn;
  Event fact = timeline.event(EventKind::fact, actor);
  fact.call = timeline.runningCall();
  fact.name = KindOf(finding).name;
  fact.text = text + "\n    " + where;
  if (where.empty()) {
    fact.text += fmt::format("in the {}, {}", NameOfHook(*mFlight), mFlight->where());
  }
  static_cast<FactNames&>(fact) = std::move(names);
  fact.code = code;
  fact.visit = mVisit;
  timeline.add(std::move(fact));
}

void Host::expectFacts(const std::string& key, const std::string& place,
                       std::vector<std::string> texts) {
  Event expect = timeline.event(EventKind::expect, Actor::session);
  expect.name = key;
  expect.where = place;
  expect.texts = std::move(texts);
  timeline.add(std::move(expect));
}

void Host::countFailure(std::string_view function) {
  ++failures;
  timeline.tell(EventKind::failure, function);
}

void Host::countAnswer(A_Err error) {
  // Nobody else excuses what an answer may have caused.
  if (!mSettings.tolerant) return;
  Event answer = timeline.event(EventKind::answer, Actor::host);
  answer.code = error;
  answer.visit = mVisit;
  timeline.send(answer);
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
  Event fact(EventKind::fact, HeadForThread(*mFlight));
  fact.name = KindOf(Finding::wrongThread).name;
  fact.function = function;
  fact.text = fmt::format(
      "{} of {}: called from another thread\n    while the main thread was in the {}, tick {}",
      function, NameOfSuite(suite), NameOfHook(*mFlight), fact.tick);
  for (const std::string& frame : Backtrace()) fact.text += "\n    " + frame;
  timeline.send(fact);
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
  const auto reportPiece = [&](Finding leak, const void* thing, const std::string& what,
                               const Origin& origin) {
    // Nothing was called with it since.
    if (!memory.at(thing).bytes.isIntact()) {
      report(Finding::overrun,
             fmt::format("the plug-in has written past the end of {} from {}", what, origin.text()),
             {origin.function, {}, {}}, "at the end of the process");
    }
    reportLeak(leak, what, origin);
  };
  for (const auto& [handle, origin] : ledger.held(Holding::memoryHandle)) {
    const bool isLocked = memory.at(handle).locks > 0;
    reportPiece(Finding::handleLeaked, handle,
                isLocked ? "a locked memory handle" : "a memory handle", origin);
  }
  for (const auto& [block, origin] : ledger.held(Holding::block)) {
    reportPiece(Finding::blockLeaked, block, "a block", origin);
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
