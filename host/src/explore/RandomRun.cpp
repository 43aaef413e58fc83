#include "RandomRun.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <set>
#include <string>

#include "Progress.h"
#include "RandomSession.h"
#include "SessionFiles.h"
#include "Shrinker.h"

namespace host {
namespace {

constexpr size_t kMaxFailures = 5;

// The sessions of a seed, by their number from 1.
class Maker {
 public:
  Maker(const RandomOptions& random, const SessionPart& part) : mRandom(random), mPart(part) {}

  Session make(uint64_t number) const {
    Session session = read(text(number), fmt::format("random-{}-{}", mRandom.seed, number));
    session.text = [this, number] { return text(number); };
    AddKnownIssues(mRandom.knownIssues, session);
    return session;
  }

  Session read(const YAML::Node& text, const std::string& name) const {
    return ReadSessions(name, WriteSession(text, ""), mPart).front();
  }

 private:
  YAML::Node text(uint64_t number) const {
    Random random(mRandom.seed, number);
    return MakeRandomSession(random, mPart);
  }

  const RandomOptions& mRandom;
  const SessionPart& mPart;
};

// Keeps the numbers of the sessions that failed, with what was found.
class Failures final : public RunListener {
 public:
  explicit Failures(uint64_t count) : mCount(count) {}
  void begin(const SessionInfo& /*session*/) override {
    if (mCount > 1) ShowProgress(fmt::format("playing {} of {}", played + 1, mCount));
  }
  void end(const SessionInfo& /*session*/, const Played& result) override {
    ++played;
    if (result.failed) all.emplace_back(played, result.findings);
  }

  std::vector<std::pair<uint64_t, std::vector<Event>>> all;
  uint64_t played = 0;

 private:
  uint64_t mCount;
};

std::set<Finding> KindsOf(const std::vector<Event>& findings) {
  std::set<Finding> kinds;
  for (const Event& found : findings) kinds.insert(KindOf(found).finding);
  return kinds;
}

// Shortens a session that fails, as long as the kinds of its findings stay.
class Shortener {
 public:
  Shortener(const Maker& maker, const RunOptions& options, Failure& failure)
      : mMaker(maker), mOptions(options), mFailure(failure) {
    // A plug-in that hangs does so at each try.
    if (!KindsOf(failure.findings).contains(Finding::timeout)) return;
    mOptions.timeout = std::min(options.timeout, std::chrono::seconds(1));
    mMaxTrials = 20;
  }

  // Returns the signal that ended it, or 0.
  int shorten() {
    mFailure.session = Shrink(
        mFailure.session, [this](const YAML::Node& text) { return stillFails(text); }, mMaxTrials);
    dropKnownIssues();
    return mSignal;
  }

 private:
  bool stillFails(const YAML::Node& text) {
    if (mSignal != 0) return false;
    try {
      Failures failures(1);
      mSignal = PlaySessions({mMaker.read(text, mFailure.title)}, mOptions, {&failures});
      if (mSignal != 0 || failures.all.empty()) return false;
      const std::vector<Event>& findings = failures.all.front().second;
      if (KindsOf(findings) != KindsOf(mFailure.findings)) return false;
      mFailure.findings = findings;
      return true;
    } catch (const SessionFileError&) {
      return false;
    }
  }

  // Without those of other findings that don't come up. One of the same could hide what failed.
  void dropKnownIssues() {
    const std::set<Finding> kinds = KindsOf(mFailure.findings);
    for (size_t i = mFailure.session["known issues"].size(); i > 0; --i) {
      const YAML::Node entry = mFailure.session["known issues"][i - 1];
      if (kinds.contains(*FindingNamed(entry["finding"].Scalar()))) continue;
      YAML::Node candidate = YAML::Clone(mFailure.session);
      candidate["known issues"].remove(i - 1);
      if (candidate["known issues"].size() == 0) candidate.remove("known issues");
      if (stillFails(candidate)) mFailure.session.reset(candidate);
    }
  }

  const Maker& mMaker;
  RunOptions mOptions;
  Failure& mFailure;
  int mMaxTrials = 400;
  int mSignal = 0;
};

}  // namespace

RandomResult PlayRandomSessions(const RandomOptions& random, const RunOptions& options,
                                const SessionPart& part, FailurePrinter& printer) {
  const Maker maker(random, part);
  Failures failures(random.count);
  uint64_t made = 0;
  const auto next = [&]() -> std::shared_ptr<const Session> {
    if (made == random.count || failures.all.size() >= kMaxFailures) return nullptr;
    return std::make_shared<Session>(maker.make(++made));
  };
  RandomResult result;
  result.signal = PlaySessions(next, options, {&failures});
  result.played = failures.played;
  ShowProgress("");
  for (const auto& [number, findings] : failures.all) {
    if (printer.count() == kMaxFailures) break;
    const Session session = maker.make(number);
    Failure failure{session.name, findings, session.text()};
    ShowProgress("shortening a session that fails");
    if (result.signal == 0) result.signal = Shortener(maker, options, failure).shorten();
    printer.print(failure);
  }
  return result;
}

}  // namespace host
