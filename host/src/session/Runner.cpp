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

// What the user has seen must have been expected, and what was set up must have been met.
void CheckNothingIsLeft(Host& host) {
  host.timeline.drain();
  const Record& record = host.timeline.record;
  for (const std::string& error : record.errors) {
    host.fallShort(fmt::format("the user saw an error that no step expects: {}", error));
  }
  for (const std::string& report : record.reports) {
    host.fallShort(fmt::format("the user saw a report that no step expects: {}", report));
  }
  for (const std::string& function : record.notSupplied) {
    host.fallShort(fmt::format("{} was called, which this host doesn't supply", function));
  }
  for (const std::string& function : host.faults.unmet()) {
    host.fallShort(fmt::format("{} wasn't called as often as it was to fail", function));
  }
  for (const auto& [operation, count] : host.timeline.answersLeft) {
    if (count == 0) continue;
    host.fallShort(fmt::format("{} answer(s) of {} were never asked for", count, operation));
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
    // Reported where it was thrown.
  } catch (const std::exception& error) {
    host.fallShort(fmt::format("the session can't go on: {}", error.what()));
  }
}

// The life of the process that plays. It ends as programs end, so that the static objects of the
// plug-in are destroyed, and then those of the host, which looks at what is left.
[[noreturn]] void Play(const Session& session, const RunOptions& options,
                       const std::filesystem::path& folder, int pipe) {
  std::signal(SIGINT, SIG_DFL);
  if (chdir(folder.c_str()) != 0) _exit(1);
  setenv("HOME", folder.c_str(), 1);
  PlaySteps(session, options, pipe, TheHost());
  std::exit(0);
}

struct Outcome {
  std::vector<std::string> shortfalls;
  std::string lastStep;
  bool ended = false;  ///< the process got to the end of its static objects
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
      case ReportKind::shortfall:
        outcome.shortfalls.push_back(report.text);
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
    outcome.shortfalls.push_back(fmt::format("the process crashed: {}, in the step at {}",
                                             strsignal(WTERMSIG(status)), outcome.lastStep));
  } else if (WEXITSTATUS(status) != 0) {
    outcome.shortfalls.push_back(fmt::format("the process ended with code {}, in the step at {}",
                                             WEXITSTATUS(status), outcome.lastStep));
  } else if (!outcome.ended) {
    outcome.shortfalls.push_back(fmt::format(
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
  return outcome.shortfalls;
}

void PrintResult(const Session& session, const RunOptions& options,
                 const std::vector<std::string>& shortfalls) {
  if (options.quiet && shortfalls.empty()) return;
  if (options.quiet) PrintHead(session);
  if (!shortfalls.empty()) fmt::print("\nfell short:\n");
  for (const std::string& shortfall : shortfalls) fmt::print("  {}\n", shortfall);
  fmt::print("result: {}\n", shortfalls.empty() ? "ok" : "failed");
}

}  // namespace host
