#include "Runner.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "SessionFolder.h"

namespace host {
namespace {

// The session must have expected all that the user saw, and used all that it set up.
void CheckNothingIsLeft(Host& host) {
  host.timeline.drain();
  const Record& record = host.timeline.record;
  for (const std::string& error : record.errors) {
    host.fail(fmt::format("the user saw an error that no step expects: {}", error));
  }
  for (const std::string& report : record.reports) {
    host.fail(fmt::format("the user saw a report that no step expects: {}", report));
  }
  for (const std::string& function : record.notSupplied) {
    host.fail(fmt::format("{} was called, which this host doesn't supply", function));
  }
  for (const std::string& function : host.faults.unmet()) {
    host.fail(fmt::format("{} wasn't called as often as it was to fail", function));
  }
  for (const auto& [operation, count] : host.timeline.answersLeft) {
    if (count == 0) continue;
    host.fail(fmt::format("{} answer(s) of {} were never asked for", count, operation));
  }
}

void PlaySteps(const Session& session, const RunOptions& options, int pipe, Host& host) {
  try {
    host.prepare(session.host, options.plugin.string(), pipe, !options.quiet);
    for (const std::string& executable : session.folder.processes) {
      host.timeline.add(Actor::desktop, fmt::format("{} runs", executable));
    }
    for (const Step& step : session.steps) {
      host.reportStep(step.place);
      step.play(host);
    }
    CheckNothingIsLeft(host);
  } catch (const SessionEnded&) {
    // The failure was reported before it was thrown.
  } catch (const std::exception& error) {
    host.fail(fmt::format("the session can't go on: {}", error.what()));
  }
}

// Plays the session and ends this process by `exit`, so that the static objects of the plug-in are
// destroyed, and then those of the host, which looks for leaks.
[[noreturn]] void Play(const Session& session, const RunOptions& options,
                       const std::filesystem::path& folder, int pipe) {
  std::signal(SIGINT, SIG_DFL);
  if (chdir(folder.c_str()) != 0) _exit(1);
  setenv("HOME", folder.c_str(), 1);
  PlaySteps(session, options, pipe, TheHost());
  std::exit(0);
}

struct Outcome {
  std::vector<std::string> failures;
  std::string lastStep;
  bool ended = false;  ///< all static objects were destroyed
};

Outcome Follow(int pipe) {
  Outcome outcome;
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> stream(fdopen(pipe, "r"), std::fclose);
  for (Report report; ReadReport(stream.get(), report);) {
    switch (report.kind) {
      case ReportKind::line:
        fmt::print("{}\n", report.text);
        break;
      case ReportKind::step:
        outcome.lastStep = report.text;
        break;
      case ReportKind::failure:
        outcome.failures.push_back(report.text);
        break;
      case ReportKind::end:
        outcome.ended = true;
        break;
    }
  }
  return outcome;
}

void AddHowItEnded(pid_t process, Outcome& outcome) {
  int status = 0;
  waitpid(process, &status, 0);
  if (WIFSIGNALED(status)) {
    outcome.failures.push_back(fmt::format("the process crashed: {}, in the step at {}",
                                           strsignal(WTERMSIG(status)), outcome.lastStep));
  } else if (WEXITSTATUS(status) != 0) {
    outcome.failures.push_back(fmt::format("the process ended with code {}, in the step at {}",
                                           WEXITSTATUS(status), outcome.lastStep));
  } else if (!outcome.ended) {
    outcome.failures.push_back(fmt::format(
        "the process ended before its static objects did, in the step at {}", outcome.lastStep));
  }
}

void PrintHead(const Session& session) {
  fmt::print("session: {}\n", session.name);
  if (!session.about.empty()) fmt::print("{}\n", session.about);
}

}  // namespace

std::vector<std::string> PlaySession(const Session& session, const RunOptions& options) {
  const SessionFolder folder(session.folder, options.fontManager);
  if (!options.quiet) {
    PrintHead(session);
    fmt::print("\n  tick  who        what\n");
  }
  std::fflush(nullptr);
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("can't make a pipe");
  const pid_t process = fork();
  if (process < 0) throw std::runtime_error("can't make a process");
  if (process == 0) {
    close(ends[0]);
    Play(session, options, folder.path(), ends[1]);
  }
  close(ends[1]);
  Outcome outcome = Follow(ends[0]);
  AddHowItEnded(process, outcome);
  return outcome.failures;
}

void PrintResult(const Session& session, const RunOptions& options,
                 const std::vector<std::string>& failures) {
  if (options.quiet && failures.empty()) return;
  if (options.quiet) PrintHead(session);
  if (!failures.empty()) fmt::print("\nfailed:\n");
  for (const std::string& failure : failures) fmt::print("  {}\n", failure);
  fmt::print("result: {}\n", failures.empty() ? "ok" : "failed");
}

}  // namespace host
