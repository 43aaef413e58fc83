#include "RandomSessions.h"

#include <fmt/format.h>
#include <yaml-cpp/yaml.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "Faults.h"
#include "RandomRules.h"
#include "Shrinker.h"
#include "Trials.h"

namespace host {
namespace {

constexpr size_t kMaxFailures = 5;

const RandomRules& LoadRules() {
  static const RandomRules kRules = [] {
    auto rules = YAML::Load(std::string(kRandomRules)).as<RandomRules>();
    const auto& functions = FunctionsThatCanFail();
    rules["any function"] = {functions.begin(), functions.end()};
    return rules;
  }();
  return kRules;
}

class Maker {
 public:
  Maker(uint64_t seed, uint64_t number, const SessionPart& part) : mRules(LoadRules()) {
    std::seed_seq sequence{seed, seed >> 32, number, number >> 32};
    mEngine.seed(sequence);
    for (const auto& [name, texts] : part.randomRules) mRules[name] = texts;
  }

  // Returns the text with a text of its rule in place of each "<rule>".
  std::string expand(const std::string& text) {
    const size_t begin = text.find('<');
    if (begin == std::string::npos) return text;
    const size_t end = text.find('>', begin);
    const std::vector<std::string>& texts = mRules.at(text.substr(begin + 1, end - begin - 1));
    std::string expanded = text.substr(0, begin) + expand(texts[mEngine() % texts.size()]);
    return expanded + expand(text.substr(end + 1));
  }

 private:
  RandomRules mRules;
  std::mt19937_64 mEngine;
};

}  // namespace

std::string MakeRandomSession(uint64_t seed, uint64_t number, const SessionPart& part) {
  return Maker(seed, number, part).expand("<session>");
}

bool PlayRandomSessions(uint64_t seed, uint64_t count, const RunOptions& options,
                        const SessionPart& part, const std::filesystem::path& save) {
  Failures failures(save);
  std::vector<Failure> found;
  const auto nameOf = [&](uint64_t number) { return fmt::format("random-{}-{}", seed, number); };
  // Without those that were under way beside the last one that failed, so that a seed repeats it.
  uint64_t played = 0;
  Trials trials("playing", count, [&](size_t index, const Played& result) {
    if (found.size() == kMaxFailures) return;
    played = index + 1;
    if (!result.failed) return;
    found.push_back(
        {nameOf(played), result.findings, YAML::Load(MakeRandomSession(seed, played, part))});
  });
  uint64_t made = 0;
  const auto next = [&]() -> std::shared_ptr<const Session> {
    if (made == count || found.size() == kMaxFailures) return nullptr;
    const std::string text = MakeRandomSession(seed, ++made, part);
    return std::make_shared<Session>(ReadSessions(nameOf(made), text, part).front());
  };
  PlaySessions(next, options, {&trials});
  for (Failure& failure : found) {
    if (CaughtSignal() == 0) Shorten(failure, options, part);
    failures.print(failure);
  }
  return failures.printOutcome(
      fmt::format("{} session{} of seed {}", played, played == 1 ? "" : "s", seed));
}

}  // namespace host
