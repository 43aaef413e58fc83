#include "RandomRun.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>
#include <string>

#include "Progress.h"
#include "RandomSession.h"
#include "Reduction.h"
#include "SessionText.h"

namespace host {
namespace {

// How many sessions are made at a time.
constexpr uint64_t kBatch = 500;
constexpr size_t kMostFailures = 5;

// Keeps what was found in the sessions that failed, by their place.
class Failures final : public RunListener {
 public:
  void begin(const SessionInfo& /*session*/) override {}
  void take(const Event& /*event*/) override {}
  void end(const SessionInfo& /*session*/, const Played& played) override {
    if (played.failed) all.emplace_back(mPlayed, played.findings);
    ++mPlayed;
  }

  std::vector<std::pair<size_t, std::vector<FoundInSession>>> all;

 private:
  size_t mPlayed = 0;
};

Session ReadRandomSession(const YAML::Node& text, const std::string& name,
                          const SessionPart& part) {
  return ReadSessions(name, WriteSession(text, ""), part).front();
}

class Maker {
 public:
  Maker(const RandomOptions& random, const SessionPart& part) : mRandom(random), mPart(part) {}

  Session make(uint64_t number) const {
    Session session =
        ReadRandomSession(text(number), fmt::format("random-{}-{}", mRandom.seed, number), mPart);
    session.text = [this, number] { return text(number); };
    Accept(mRandom.limits, session);
    return session;
  }

 private:
  YAML::Node text(uint64_t number) const {
    Random random(mRandom.seed, number);
    if (mRandom.from.empty()) return MakeRandomSession(random, mPart);
    const Session& from = mRandom.from[random.below(mRandom.from.size())];
    return MakeRandomSessionFrom(from.text(), random, mPart);
  }

  const RandomOptions& mRandom;
  const SessionPart& mPart;
};

std::set<Finding> KindsOf(const std::vector<FoundInSession>& findings) {
  std::set<Finding> kinds;
  for (const FoundInSession& found : findings) kinds.insert(found.finding);
  return kinds;
}

// The shorter session has to fail with findings of the same kinds.
YAML::Node Shorten(const Session& session, const std::set<Finding>& kinds,
                   const RunOptions& options, const SessionPart& part) {
  const auto stillFails = [&](const YAML::Node& text) {
    try {
      Failures failures;
      PlaySessions({ReadRandomSession(text, session.name, part)}, options, {&failures});
      return !failures.all.empty() && KindsOf(failures.all.front().second) == kinds;
    } catch (const SessionFileError&) {
      return false;
    }
  };
  return Reduce(session.text(), stillFails);
}

}  // namespace

RandomResult PlayRandomSessions(const RandomOptions& random, const RunOptions& options,
                                const SessionPart& part) {
  RandomResult result;
  const Maker maker(random, part);
  while (result.played < random.count && result.failures.size() < kMostFailures) {
    std::vector<Session> sessions;
    const uint64_t end = std::min(result.played + kBatch, random.count);
    for (uint64_t i = result.played; i < end; ++i) sessions.push_back(maker.make(i + 1));
    ShowProgress(fmt::format("playing {} to {} of {}", result.played + 1, end, random.count));
    Failures failures;
    result.signal = PlaySessions(sessions, options, {&failures});
    ShowProgress("");
    if (result.signal != 0) return result;
    for (const auto& [place, findings] : failures.all) {
      if (findings.empty() || result.failures.size() == kMostFailures) continue;
      ShowProgress("shortening a session that fails");
      result.failures.push_back({result.played + place + 1, findings,
                                 Shorten(sessions[place], KindsOf(findings), options, part)});
    }
    ShowProgress("");
    result.played = end;
  }
  return result;
}

}  // namespace host
