#include "Sweep.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "Progress.h"
#include "SessionText.h"
#include "Steps.h"

namespace host {
namespace {

// An error of no function of the host's own, so that it is known again where a hook returns it.
constexpr A_Err kSweepError = 24301;

// Keeps what came of the sessions.
class Results final : public RunListener {
 public:
  // `what` is done with them, for the progress.
  explicit Results(const char* what, size_t count) : mWhat(what), mCount(count) {}
  void begin(const SessionInfo& session) override {
    ShowProgress(fmt::format("{} {}/{} {}", mWhat, all.size() + 1, mCount, session.name));
  }
  void end(const SessionInfo& /*session*/, const Played& played) override {
    all.push_back(played);
    ShowProgress("");
  }

  std::vector<Played> all;

 private:
  const char* mWhat;
  size_t mCount;
};

// A function of the host answers an error.
Trial MakeHostTrial(const CountedCall& call) {
  const A_Err error =
      call.function == "AcquireSuite" ? A_Err{PF_Err_BAD_CALLBACK_PARAM} : kSweepError;
  Trial trial;
  trial.entry = call.entry;
  trial.what = fmt::format("call {} of {} fails with {}", call.number, call.function, error);
  trial.step = fmt::format("fail: {{function: {}, result: {}, call: {}}}", call.function, error,
                           call.number);
  trial.plant = [=](Host& host) { host.faults.failCall(call.function, error, call.inEntry); };
  trial.isAwaited = [](const Host& host) { return host.faults.waitsForCall(); };
  return trial;
}

// The calls come in their order, so that the trials do.
std::vector<Trial> MakeTrials(const std::vector<CountedCall>& calls, const SessionPart& part) {
  std::vector<Trial> trials;
  for (const CountedCall& call : calls) {
    if (FunctionsThatCanFail().contains(call.function)) trials.push_back(MakeHostTrial(call));
    for (const std::string& step : part.faultsOf(call)) {
      trials.push_back({call.entry, step, step, ReadPartStep(step, part),
                        [&part](const Host&) { return part.awaitsCall(); }});
    }
  }
  return trials;
}

void AddFailures(const Session& session, const Played& played, SweepResult& result) {
  if (!played.failed && played.trials.empty()) return;
  YAML::Node text = session.text();
  text["tolerant"] = true;
  if (played.failed) {
    result.failures.push_back({session.name, "nothing goes wrong", played.findings, text});
  }
  const std::vector<Trial> trials = session.makeTrials();
  for (const FoundInTrial& each : played.trials) {
    const Trial& trial = trials[each.trial];
    if (result.failures.empty() || result.failures.back().session != session.name ||
        result.failures.back().what != trial.what) {
      result.failures.push_back({session.name, trial.what, {}, WithFirstStep(text, trial.step)});
    }
    result.failures.back().findings.push_back(each.found);
  }
}

}  // namespace

SweepResult Sweep(std::vector<Session> sessions, const RunOptions& options,
                  const SessionPart& part) {
  SweepResult result;
  for (Session& session : sessions) {
    session.host.tolerant = true;
    session.countsCalls = true;
  }
  Results counted("counting the calls of", sessions.size());
  result.signal = PlaySessions(sessions, options, {&counted});
  if (result.signal != 0) return result;
  for (size_t i = 0; i < sessions.size(); ++i) {
    sessions[i].countsCalls = false;
    sessions[i].makeTrials = [&calls = counted.all[i].calls, &part] {
      return MakeTrials(calls, part);
    };
    result.calls += counted.all[i].calls.size();
    result.trials += MakeTrials(counted.all[i].calls, part).size();
  }
  Results tried("sweeping", sessions.size());
  result.signal = PlaySessions(sessions, options, {&tried});
  for (size_t i = 0; i < tried.all.size(); ++i) AddFailures(sessions[i], tried.all[i], result);
  return result;
}

}  // namespace host
