#include "RandomRun.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
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

// Shortens a session that fails, as long as the kinds of its findings stay.
class Shortener {
 public:
  Shortener(const Session& session, const RunOptions& options, const SessionPart& part,
            RandomFailure& failure)
      : mSession(session), mOptions(options), mPart(part), mFailure(failure) {
    // A plug-in that hangs does so at each try.
    if (!KindsOf(failure.findings).contains(Finding::timeout)) return;
    mOptions.timeout = std::min(options.timeout, std::chrono::seconds(1));
    mMostTrials = 20;
  }

  // Returns the signal that ended it, or 0.
  int shorten() {
    mFailure.session = Reduce(
        mSession.text(), [this](const YAML::Node& text) { return stillFails(text); }, mMostTrials);
    dropAcceptances();
    return mSignal;
  }

 private:
  bool stillFails(const YAML::Node& text) {
    try {
      Failures failures;
      mSignal =
          PlaySessions({ReadRandomSession(text, mSession.name, mPart)}, mOptions, {&failures});
      if (mSignal != 0 || failures.all.empty()) return false;
      const std::vector<FoundInSession>& findings = failures.all.front().second;
      if (KindsOf(findings) != KindsOf(mFailure.findings)) return false;
      mFailure.findings = findings;
      return true;
    } catch (const SessionFileError&) {
      return false;
    }
  }

  // Without those of other findings that don't come up. One of the same could hide what failed.
  void dropAcceptances() {
    const std::set<Finding> kinds = KindsOf(mFailure.findings);
    for (size_t i = mFailure.session["accepted"].size(); i > 0; --i) {
      const YAML::Node entry = mFailure.session["accepted"][i - 1];
      if (kinds.contains(*FindingNamed(entry["finding"].Scalar()))) continue;
      YAML::Node candidate = YAML::Clone(mFailure.session);
      candidate["accepted"].remove(i - 1);
      if (candidate["accepted"].size() == 0) candidate.remove("accepted");
      if (stillFails(candidate)) mFailure.session.reset(candidate);
    }
  }

  const Session& mSession;
  RunOptions mOptions;
  const SessionPart& mPart;
  RandomFailure& mFailure;
  int mMostTrials = 400;
  int mSignal = 0;
};

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
    for (const auto& [place, findings] : failures.all) {
      if (result.failures.size() == kMostFailures) break;
      result.failures.push_back({sessions[place].name, findings, sessions[place].text()});
      if (result.signal != 0) continue;
      ShowProgress("shortening a session that fails");
      result.signal = Shortener(sessions[place], options, part, result.failures.back()).shorten();
      ShowProgress("");
    }
    if (result.signal != 0) return result;
    result.played = end;
  }
  return result;
}

}  // namespace host
