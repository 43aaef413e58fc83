#include <fmt/format.h>

#include <array>
#include <tuple>
#include <utility>

#include "Backtrace.h"
#include "Host.h"
#include "TextFile.h"

// What the host tells the process that waits, which decides what is a finding.

namespace host {

void Host::report(Finding finding, const std::string& text, FactNames names, int64_t code) {
  const Actor actor = finding == Finding::setup ? Actor::session : Actor::plugIn;
  Event fact = timeline.event(EventKind::fact, actor);
  fact.call = timeline.runningCall();
  fact.name = KindOf(finding).name;
  fact.text = text + "\n    " +
              (mIsOver ? "at the end of the process"
                       : fmt::format("in {}, {}", mFlight->inWhat(), mFlight->where()));
  static_cast<FactNames&>(fact) = std::move(names);
  if (code != 0) fact.result = code;
  fact.visit = mVisit;
  timeline.add(std::move(fact));
}

A_Err Host::takeFault(std::string_view function) {
  const A_Err error = faults.take(function);
  if (error != A_Err_NONE) {
    tellFailure(function);
    timeline.add(Actor::host, fmt::format("{} fails with {}", function, error));
  }
  return error;
}

void Host::tellFailure(std::string_view function) {
  ++failures;
  timeline.tell(EventKind::failure, function);
}

void Host::tellAnswer(A_Err error) {
  Event answer = timeline.event(EventKind::answer, Actor::host);
  answer.result = error;
  answer.visit = mVisit;
  timeline.send(answer);
}

bool Host::refusesMoreHooks() {
  constexpr size_t kMaxDepth = 100;
  if (mNestsTooDeep) return true;
  if (mCalls.size() < kMaxDepth) return false;
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
  Event fact(EventKind::fact, HeadOf(*mFlight));
  fact.name = KindOf(Finding::wrongThread).name;
  fact.function = function;
  fact.text = fmt::format(
      "{} of {}: called from another thread\n    while the main thread was in {}, tick {}",
      function, NameOfSuite(suite), mFlight->inWhat(), fact.tick);
  for (const std::string& frame : Backtrace()) fact.text += "\n    " + frame;
  timeline.send(fact);
  return PF_Err_BAD_CALLBACK_PARAM;
}

void Host::reportLeaks() {
  constexpr std::array kLeaks{
      std::tuple{Holding::suite, Finding::suiteLeaked, ""},
      std::tuple{Holding::memoryHandle, Finding::handleLeaked, "a memory handle"},
      std::tuple{Holding::block, Finding::blockLeaked, "a block"},
  };
  bool isClean = true;
  for (const auto& [kind, finding, name] : kLeaks) {
    for (const auto& [thing, held] : ledger.held(kind)) {
      isClean = false;
      const char* const function = held->origin.function;
      const std::string from = held->origin.text();
      const std::string what = kind == Holding::suite ? NameOfSuite(thing)
                               : held->locks > 0      ? "a locked memory handle"
                                                      : name;
      // Nothing was called with it since.
      if (!held->bytes.isIntact()) {
        report(Finding::overrun,
               fmt::format("the plug-in has written past the end of {} from {}", what, from),
               {function, {}, {}});
      }
      report(finding, fmt::format("{} is left, from {}", what, from), {function, what, {}});
    }
  }
  if (isClean) timeline.add(Actor::host, "is gone; no suite, no handle and no block is left");
}

void Host::noteOnce(Actor actor, const std::string& text) {
  if (mNotes.insert(text).second) timeline.add(actor, text);
}

}  // namespace host
