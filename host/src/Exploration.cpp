#include "Exploration.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <set>
#include <string>

#include "SessionText.h"
#include "Sweep.h"
#include "TextFile.h"

namespace host {
namespace {

// A file's name in place of a text.
std::string FileNameOf(std::string text) {
  std::replace_if(
      text.begin(), text.end(),
      [](unsigned char letter) { return std::isalnum(letter) == 0 && letter < 0x80; }, '-');
  return text + ".yaml";
}

// Something that failed, and the session that repeats it.
struct Failure {
  std::string title;
  const std::vector<FoundInSession>& findings;
  const YAML::Node& session;
};

void Print(const Failure& failure) {
  fmt::print("\n{}\n", failure.title);
  if (failure.findings.empty()) fmt::print("  not every step was played\n");
  for (const FoundInSession& found : failure.findings) {
    fmt::print("  {}: {}\n", KindOf(found.finding).name, EscapeLines(found.text));
  }
  fmt::print("\nThis session repeats it:\n\n{}", WriteSession(failure.session, failure.title));
}

// Prints them all before it writes the first, in case that it can't.
void PrintAndSave(const std::vector<Failure>& failures, const std::filesystem::path& save) {
  for (const Failure& failure : failures) Print(failure);
  if (save.empty() || failures.empty()) return;
  fmt::print("\n");
  std::set<std::string> names;
  for (const Failure& failure : failures) {
    std::string name = FileNameOf(failure.title);
    // Titles that differ only in replaced characters give one name.
    for (int i = 2; !names.insert(name).second; ++i) {
      name = FileNameOf(fmt::format("{} {}", failure.title, i));
    }
    const std::filesystem::path file = save / name;
    WriteText(file, WriteSession(failure.session, failure.title));
    fmt::print("written: {}\n", file.string());
  }
}

std::string Sessions(size_t count) {
  return fmt::format("{} session{}", count, count == 1 ? "" : "s");
}

Explored PrintOutcome(bool failed, int signal) {
  if (signal == 0) fmt::print("result: {}\n", failed ? "failed" : "ok");
  return {failed, signal};
}

}  // namespace

Explored PrintSweep(const std::vector<Session>& sessions, const RunOptions& options,
                    const SessionPart& part, const std::filesystem::path& save) {
  const SweepResult result = Sweep(sessions, options, part);
  std::vector<Failure> failures;
  failures.reserve(result.failures.size());
  for (const SweepFailure& each : result.failures) {
    failures.push_back(
        {fmt::format("{}: {}", each.session, each.what), each.findings, each.repeat});
  }
  PrintAndSave(failures, save);
  fmt::print("{} calls in {}, {} trials, {} failed\n", result.calls, Sessions(sessions.size()),
             result.trials, result.failures.size());
  return PrintOutcome(!result.failures.empty(), result.signal);
}

Explored PrintRandom(const RandomOptions& random, const RunOptions& options,
                     const SessionPart& part, const std::filesystem::path& save) {
  const RandomResult result = PlayRandomSessions(random, options, part);
  std::vector<Failure> failures;
  failures.reserve(result.failures.size());
  for (const RandomFailure& each : result.failures) {
    failures.push_back({each.name, each.findings, each.session});
  }
  PrintAndSave(failures, save);
  fmt::print("{} of seed {}, {} failed\n", Sessions(result.played), random.seed,
             result.failures.size());
  return PrintOutcome(!result.failures.empty(), result.signal);
}

}  // namespace host
