#include "Sweep.h"

#include <fmt/format.h>

#include <deque>
#include <map>
#include <memory>
#include <stdexcept>
#include <utility>

#include "Faults.h"
#include "Progress.h"
#include "SessionFiles.h"
#include "Steps.h"

namespace host {
namespace {

// An error of no function of the host's own, so that it is known again where a hook returns it.
constexpr A_Err kSweepError = 24301;

// Keeps the calls of each session, and prints the sessions that fail.
class CallCounter final : public RunListener {
 public:
  CallCounter(const std::vector<Session>& sessions, FailurePrinter& printer)
      : mSessions(sessions), mPrinter(printer) {}

  void begin(const SessionInfo& session) override {
    ShowProgress(fmt::format("counting the calls of {}/{} {}", calls.size() + 1, mSessions.size(),
                             session.name));
    mNumbers.clear();
    calls.emplace_back();
  }

  void take(const Event& event) override {
    if (event.kind != EventKind::entry || event.call.function.empty()) return;
    if (!event.result && event.actor != Actor::framework) return;
    const int64_t number = ++mNumbers[event.call.function];
    // What comes while the session settles is no part of it.
    if (event.place != kSettling) calls.back().push_back({event.call.function, number});
  }

  void end(const SessionInfo& session, const Played& played) override {
    ShowProgress("");
    if (!played.failed) return;
    mPrinter.print({session.name + ": nothing goes wrong", played.findings,
                    mSessions[calls.size() - 1].text()});
  }

  std::vector<std::vector<CountedCall>> calls;  ///< by session

 private:
  const std::vector<Session>& mSessions;
  FailurePrinter& mPrinter;
  std::map<std::string, int64_t> mNumbers;
};

// A session with one fault.
struct Trial {
  std::string what;  ///< goes wrong, as "call 3 of AEGP_GetProjectPath fails with 24301"
  std::string step;  ///< YAML of the step that makes it go wrong
};

std::vector<Trial> MakeTrials(const std::vector<CountedCall>& calls, const SessionPart& part) {
  std::vector<Trial> trials;
  for (const CountedCall& call : calls) {
    if (FunctionsThatCanFail().contains(call.function)) {
      const A_Err error =
          call.function == "AcquireSuite" ? A_Err{PF_Err_BAD_CALLBACK_PARAM} : kSweepError;
      trials.push_back(
          {fmt::format("call {} of {} fails with {}", call.number, call.function, error),
           fmt::format("fail: {{function: {}, result: {}, call: {}}}", call.function, error,
                       call.number)});
    }
    for (const std::string& step : part.faultsOf(call)) trials.push_back({step, step});
  }
  return trials;
}

// Makes the trials one after the other as they are asked for, and prints those that fail.
class Trials final : public RunListener {
 public:
  Trials(const std::vector<Session>& sessions, const std::vector<std::vector<CountedCall>>& calls,
         const SessionPart& part, FailurePrinter& printer)
      : mPart(part), mPrinter(printer) {
    for (size_t i = 0; i < sessions.size(); ++i) {
      for (Trial& trial : MakeTrials(calls[i], part)) mPlanned.emplace_back(&sessions[i], trial);
    }
    count = mPlanned.size();
  }

  std::shared_ptr<const Session> next() {
    if (mBegun == mPlanned.size()) return nullptr;
    const auto& [session, trial] = mPlanned[mBegun++];
    auto planted = std::make_shared<Session>(*session);
    planted->steps.insert(planted->steps.begin(), ReadStepOf(trial.step, mPart));
    planted->stepCount = planted->steps.size();
    planted->preparations.emplace_back([this](Host& host) {
      host.beforeFinish = [this, &host] {
        if (!host.faults.waitsForCall() && !mPart.awaitsCall()) return;
        host.report(Finding::setup, "the call that is to go wrong never came");
      };
    });
    return planted;
  }

  void begin(const SessionInfo& session) override {
    ShowProgress(fmt::format("sweeping {}/{} {}", played + 1, count, session.name));
  }

  void end(const SessionInfo& session, const Played& result) override {
    const auto& [from, trial] = mPlanned[played++];
    // One that `--allow` lets end early passes.
    if (!result.hasErrors) return;
    mPrinter.print({session.name + ": " + trial.what, result.findings,
                    WithFirstStep(from->text(), trial.step)});
  }

  size_t count = 0;
  size_t played = 0;

 private:
  const SessionPart& mPart;
  FailurePrinter& mPrinter;
  std::vector<std::pair<const Session*, Trial>> mPlanned;
  size_t mBegun = 0;
};

}  // namespace

SweepResult Sweep(std::vector<Session> sessions, const RunOptions& options, const SessionPart& part,
                  FailurePrinter& printer) {
  SweepResult result;
  for (Session& session : sessions) {
    session.host.tolerant = true;
    session.text = [read = session.text] {
      YAML::Node text = read();
      text["tolerant"] = true;
      return text;
    };
    session.host.showsCalls = true;
  }
  CallCounter counter(sessions, printer);
  result.signal = PlaySessions(sessions, options, {&counter});
  for (const auto& calls : counter.calls) result.calls += calls.size();
  if (result.signal != 0 || printer.count() > 0) return result;
  for (Session& session : sessions) session.host.showsCalls = false;
  Trials trials(sessions, counter.calls, part, printer);
  if (trials.count == 0) throw std::runtime_error("the sessions have no call that could go wrong");
  result.signal = PlaySessions([&] { return trials.next(); }, options, {&trials});
  ShowProgress("");
  result.trials = trials.played;
  return result;
}

}  // namespace host
