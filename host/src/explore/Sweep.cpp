#include "Sweep.h"

#include <fmt/format.h>

#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "Faults.h"
#include "Steps.h"
#include "Trials.h"

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
  std::string name() const { return session.name + ": " + what; }

  const Session& session;  ///< without the fault
  std::string what;        ///< goes wrong, as "call 3 of AEGP_NewProject fails with 24301"
  std::string step;        ///< YAML of the step that makes it go wrong
};

// Adds each way in which the call can go wrong.
void AddTrials(std::vector<Trial>& trials, const Session& session, const CountedCall& call,
               const SessionPart& part) {
  const auto& [function, number] = call;
  if (FunctionsThatCanFail().contains(function)) {
    const A_Err error = function == "AcquireSuite" ? A_Err{PF_Err_BAD_CALLBACK_PARAM} : kSweepError;
    trials.push_back(
        {session, fmt::format("call {} of {} fails with {}", number, function, error),
         fmt::format("fail: {{function: {}, result: {}, call: {}}}", function, error, number)});
  }
  for (const std::string& step : part.faultsOf(call)) {
    trials.push_back({session, step, step});
  }
}

std::shared_ptr<const Session> MakeSession(const Trial& trial, const SessionPart& part) {
  auto session = std::make_shared<Session>(trial.session);
  session->name = trial.name();
  session->host.showsCalls = false;
  session->host.isTrial = true;
  session->steps.insert(session->steps.begin(), ReadStepOf(trial.step, part));
  session->stepCount = session->steps.size();
  return session;
}

// Returns the steps with another one, as YAML, before them.
YAML::Node StepsAfter(const std::string& step, const YAML::Node& steps) {
  YAML::Node all(YAML::NodeType::Sequence);
  all.push_back(YAML::Load(step));
  bool starts = false;
  for (const YAML::Node& each : steps) {
    starts = starts || (each.IsMap() ? each.begin()->first : each).Scalar() == "start";
  }
  // A session that starts the host by itself does so after its first steps.
  if (!starts) all.push_back("start");
  for (const YAML::Node& each : steps) all.push_back(each);
  return all;
}

// Returns the text of the session as a tolerant one, with the step before all others.
YAML::Node TolerantText(const Session& session, const std::string& step = "") {
  YAML::Node text;
  text["tolerant"] = true;
  for (const auto& entry : YAML::Load(session.text)) {
    const std::string key = entry.first.Scalar();
    if (key == "tolerant") continue;
    text[key] = key == "steps" && !step.empty() ? StepsAfter(step, entry.second) : entry.second;
  }
  return text;
}

// Plays the sessions with nothing going wrong. Returns how many calls they have, and plans the
// trials.
size_t CountCalls(const std::vector<Session>& sessions, const RunOptions& options,
                  const SessionPart& part, Failures& failures, std::vector<Trial>& planned) {
  size_t calls = 0;
  CallCounter counter;
  Trials trials("counting the calls of", sessions.size(), [&](size_t index, const Played& played) {
    const Session& session = sessions[index];
    if (played.failed) {
      failures.print(
          {session.name + ": nothing goes wrong", played.findings, TolerantText(session)});
    }
    for (const CountedCall& call : counter.calls) AddTrials(planned, session, call, part);
    calls += counter.calls.size();
  });
  PlaySessions(EachOf(sessions), options, {&counter, &trials});
  return calls;
}

}  // namespace

bool Sweep(std::vector<Session> sessions, const RunOptions& options, const SessionPart& part,
           const std::filesystem::path& save) {
  Failures failures(save);
  for (Session& session : sessions) {
    session.host.tolerant = true;
    session.host.showsCalls = true;
  }
  std::vector<Trial> planned;
  const size_t calls = CountCalls(sessions, options, part, failures, planned);
  Trials trials("sweeping", planned.size(), [&](size_t index, const Played& played) {
    const Trial& trial = planned[index];
    // One that `--allow` lets end early passes.
    if (!played.hasErrors) return;
    failures.print({trial.name(), played.findings, TolerantText(trial.session, trial.step)});
  });
  if (CaughtSignal() == 0 && failures.count() == 0) {
    if (planned.empty()) throw std::runtime_error("the sessions have no call that could go wrong");
    PlaySessions(
        [&, made = size_t{0}]() mutable {
          return made == planned.size() ? nullptr : MakeSession(planned[made++], part);
        },
        options, {&trials});
  }
  return failures.printOutcome(fmt::format("{} calls in {} session{}, {} trials", calls,
                                           sessions.size(), sessions.size() == 1 ? "" : "s",
                                           trials.count()));
}

}  // namespace host
