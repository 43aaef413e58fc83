#include "RandomSessions.h"

#include <fmt/format.h>
#include <yaml-cpp/yaml.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <string_view>
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

  std::string make() {
    if (below(2) == 0) {
      // One step in seven.
      for (const char* const name : {"step", "step", "step before"}) {
        mRules[name].emplace_back("<fault>");
      }
    }
    std::string text = expand("<session>");
    for (size_t count = 1 + below(24); count > 0; --count) text += "- " + makeStep() + "\n";
    return text;
  }

 private:
  size_t below(size_t count) { return static_cast<size_t>(mEngine() % count); }

  // Returns the text with a text of its rule in place of each "<rule>".
  std::string expand(const std::string& text) {
    const size_t begin = text.find('<');
    if (begin == std::string::npos) return text;
    const size_t end = text.find('>', begin);
    const std::vector<std::string>& texts = mRules.at(text.substr(begin + 1, end - begin - 1));
    std::string expanded = text.substr(0, begin) + expand(texts[below(texts.size())]);
    return expanded + expand(text.substr(end + 1));
  }

  // Steps open only what exists.
  std::string makeStep() {
    constexpr std::string_view kSaveAs = "save as: ";
    constexpr std::string_view kRemove = "remove: ";
    std::string step = expand("<step>");
    std::vector<std::string>& projects = mRules["project"];
    if (step.starts_with(kSaveAs)) {
      const std::string project = step.substr(kSaveAs.size());
      std::erase(projects, project);
      projects.push_back(project);
    } else if (step.starts_with(kRemove)) {
      if (projects.size() == 1) return "tick";
      std::erase(projects, step.substr(kRemove.size()));
    }
    return step;
  }

  RandomRules mRules;
  std::mt19937_64 mEngine;
};

}  // namespace

std::string MakeRandomSession(uint64_t seed, uint64_t number, const SessionPart& part) {
  return Maker(seed, number, part).make();
}

bool PlayRandomSessions(uint64_t seed, uint64_t count, const RunOptions& options,
                        const SessionPart& part, const std::filesystem::path& save) {
  Failures failures(save);
  std::vector<Failure> found;
  const auto nameOf = [&](uint64_t number) { return fmt::format("random-{}-{}", seed, number); };
  // Without those that were under way beside the last one that failed, so that a seed repeats it.
  uint64_t played = 0;
  Trials trials("playing", count, [&](size_t /*index*/, const Played& result) {
    if (found.size() == kMaxFailures) return;
    ++played;
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
