#include "Exploration.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
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

// Prints a session that failed, and writes it to a file.
void PrintFailure(const std::string& title, const std::vector<FoundInSession>& findings,
                  const YAML::Node& session, const std::filesystem::path& save) {
  fmt::print("\n{}\n", title);
  if (findings.empty()) fmt::print("  not every step was played\n");
  for (const FoundInSession& found : findings) {
    fmt::print("  {}: {}\n", KindOf(found.finding).name, EscapeLines(found.text));
  }
  const std::string text = WriteSession(session, title);
  fmt::print("\nThis session repeats it:\n\n{}", text);
  if (save.empty()) return;
  const std::filesystem::path file = save / FileNameOf(title);
  WriteText(file, text);
  fmt::print("\nwritten: {}\n", file.string());
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
  for (const SweepFailure& failure : result.failures) {
    PrintFailure(fmt::format("{}: {}", failure.session, failure.what), failure.findings,
                 failure.repeat, save);
  }
  fmt::print("{} calls in {}, {} trials, {} failed\n", result.calls, Sessions(sessions.size()),
             result.trials, result.failures.size());
  return PrintOutcome(!result.failures.empty(), result.signal);
}

Explored PrintRandom(const RandomOptions& random, const RunOptions& options,
                     const SessionPart& part, const std::filesystem::path& save) {
  const RandomResult result = PlayRandomSessions(random, options, part);
  for (const RandomFailure& failure : result.failures) {
    PrintFailure(failure.name, failure.findings, failure.session, save);
  }
  fmt::print("{} of seed {}, {} failed\n", Sessions(result.played), random.seed,
             result.failures.size());
  return PrintOutcome(!result.failures.empty(), result.signal);
}

}  // namespace host
