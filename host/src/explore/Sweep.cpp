#include "Sweep.h"

#include <fmt/format.h>

#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "Faults.h"
#include "SessionFiles.h"
#include "Steps.h"

namespace host {
namespace {

// An error of no function of the host's own, so that it is known again where a hook returns it.
constexpr A_Err kSweepError = 24301;

// Keeps the calls of a session.
class CallCounter final : public RunListener {
 public:
  void begin(const SessionInfo& /*session*/) override {
    mNumbers.clear();
    calls.clear();
  }

  void take(const Event& event) override {
    if (event.kind != EventKind::entry || event.call.function.empty()) return;
    if (!event.result && event.actor != Actor::framework) return;
    const int64_t number = ++mNumbers[event.call.function];
    // What comes while the session settles is no part of it.
    if (event.place != kSettling) calls.push_back({event.call.function, number});
  }

  void end(const SessionInfo& /*session*/, const Played& /*played*/) override {}

  std::vector<CountedCall> calls;

 private:
  std::map<std::string, int64_t> mNumbers;
};

// A session with one fault.
struct Trial {
  const Session& session;  ///< without the fault
  std::string what;        ///< goes wrong, as "call 3 of AEGP_NewProject fails with 24301"
  std::string step;        ///< YAML of the step that makes it go wrong
};

// Plans the trials of sessions, and makes them one after the other.
class Plan {
 public:
  explicit Plan(const SessionPart& part) : mPart(part) {}

  void add(const Session& session, const CountedCall& call) {
    const auto& [function, number] = call;
    if (FunctionsThatCanFail().contains(function)) {
      const A_Err error =
          function == "AcquireSuite" ? A_Err{PF_Err_BAD_CALLBACK_PARAM} : kSweepError;
      mTrials.push_back(
          {session, fmt::format("call {} of {} fails with {}", number, function, error),
           fmt::format("fail: {{function: {}, result: {}, call: {}}}", function, error, number)});
    }
    for (const std::string& step : mPart.faultsOf(call)) mTrials.push_back({session, step, step});
  }

  size_t count() const { return mTrials.size(); }

  // Returns null when there are no more.
  std::shared_ptr<const Session> next() {
    if (mMade == mTrials.size()) return nullptr;
    const Trial& trial = mTrials[mMade++];
    auto session = std::make_shared<Session>(trial.session);
    session->name += ": " + trial.what;
    session->host.showsCalls = false;
    session->text = [&trial] { return WithFirstStep(trial.session.text(), trial.step); };
    session->steps.insert(session->steps.begin(), ReadStepOf(trial.step, mPart));
    session->stepCount = session->steps.size();
    session->preparations.emplace_back([&part = mPart](Host& host) {
      host.beforeFinish = [&part, &host] {
        if (!host.faults.waitsForCall() && !part.awaitsCall()) return;
        host.report(Finding::setup, "the call that is to go wrong never came");
      };
    });
    return session;
  }

 private:
  const SessionPart& mPart;
  std::vector<Trial> mTrials;
  size_t mMade = 0;
};

void MakeTolerant(Session& session) {
  session.host.tolerant = true;
  session.text = [read = session.text] {
    YAML::Node text = read();
    text["tolerant"] = true;
    return text;
  };
}

}  // namespace

Explored Sweep(std::vector<Session> sessions, const RunOptions& options, const SessionPart& part,
               FailurePrinter& printer) {
  for (Session& session : sessions) {
    MakeTolerant(session);
    session.host.showsCalls = true;
  }
  Plan plan(part);
  CallCounter counter;
  size_t calls = 0;
  const auto count = [&](const Session& session, const Played& played) {
    if (played.failed) {
      printer.print({session.name + ": nothing goes wrong", played.findings, session.text()});
    }
    for (const CountedCall& call : counter.calls) plan.add(session, call);
    calls += counter.calls.size();
  };
  int signal = Trials("counting the calls of", sessions.size(), count)
                   .play(EachOf(sessions), options, {&counter});
  Trials trials("sweeping", plan.count(), [&](const Session& session, const Played& played) {
    // One that `--allow` lets end early passes.
    if (played.hasErrors) printer.print({session.name, played.findings, session.text()});
  });
  if (signal == 0 && printer.count() == 0) {
    if (plan.count() == 0)
      throw std::runtime_error("the sessions have no call that could go wrong");
    signal = trials.play([&] { return plan.next(); }, options);
  }
  return {fmt::format("{} calls in {} session{}, {} trials", calls, sessions.size(),
                      sessions.size() == 1 ? "" : "s", trials.count()),
          signal};
}

}  // namespace host
