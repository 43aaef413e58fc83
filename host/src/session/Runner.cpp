#include "Runner.h"

#include <poll.h>
#include <signal.h>

#include <algorithm>
#include <deque>
#include <iterator>
#include <memory>
#include <optional>

#include "Janitor.h"
#include "PlayedProcess.h"

namespace host {
namespace {

constexpr int64_t kLongTime = 100'000'000;  // nanoseconds

volatile sig_atomic_t caughtSignal = 0;

void CatchSignals() {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    // `nohup` and the like have it ignored.
    if (::signal(signal, [](int caught) { caughtSignal = caught; }) == SIG_IGN) {
      ::signal(signal, SIG_IGN);
    }
  }
}

struct Job {
  Job(const Session& session, const RunOptions& options, Janitor& janitor)
      : process(session, options, janitor) {}

  PlayedProcess process;
  std::optional<Played> result;  ///< once the session is over
  std::vector<std::string> lines;
  bool announced = false;
};

using Jobs = std::deque<std::unique_ptr<Job>>;

// The processes that run beside a session are in the list of processes that every session sees, so
// that such a session is played alone.
bool HasRoomFor(const Session& session, const Jobs& jobs, size_t most) {
  size_t running = 0;
  bool alone = !session.setUp.processes.empty();
  for (const auto& job : jobs) {
    if (job->result) continue;
    ++running;
    alone = alone || !job->process.session().setUp.processes.empty();
  }
  return alone ? running == 0 : running < most;
}

// Waits until a process has something to report, but not long: one may hang, or end without a word.
void WaitForReports(const Jobs& jobs) {
  constexpr int kMilliseconds = 20;
  std::vector<pollfd> awaited;
  for (const auto& job : jobs) {
    if (!job->result) awaited.push_back({job->process.awaited(), POLLIN, 0});
  }
  if (!awaited.empty()) poll(awaited.data(), awaited.size(), kMilliseconds);
}

void Update(Job& job) {
  if (job.result) return;
  const bool goesOn = job.process.update();
  std::vector<std::string> lines = job.process.takeLines();
  std::move(lines.begin(), lines.end(), std::back_inserter(job.lines));
  if (!goesOn) job.result = job.process.result();
}

// Tells the listener what is new of the session whose turn it is. Returns whether it is over.
bool Tell(Job& job, const RunListener& listener) {
  if (!job.announced) listener.begun(job.process.session());
  job.announced = true;
  for (const std::string& line : job.lines) listener.line(line);
  job.lines.clear();
  if (!job.result) return false;
  listener.ended(job.process.session(), *job.result);
  return true;
}

}  // namespace

int PlaySessions(const std::vector<Session>& sessions, const RunOptions& options,
                 const RunListener& listener) {
  Janitor janitor;
  CatchSignals();
  Jobs jobs;
  auto next = sessions.begin();
  bool stops = false;
  while (caughtSignal == 0) {
    while (!stops && next != sessions.end() && HasRoomFor(*next, jobs, options.jobs)) {
      jobs.push_back(std::make_unique<Job>(*next++, options, janitor));
    }
    if (jobs.empty()) break;
    WaitForReports(jobs);
    for (const auto& job : jobs) Update(*job);
    // A listener that waits for its reader keeps the processes waiting.
    const int64_t before = MonotonicNow();
    const bool isOver = !jobs.empty() && Tell(*jobs.front(), listener);
    if (MonotonicNow() - before > kLongTime) {
      for (const auto& job : jobs) job->process.restartTimeLimit();
    }
    if (isOver) {
      stops = stops || (options.failFast && jobs.front()->result->failed(options.strict));
      jobs.pop_front();
      if (stops) jobs.clear();
    }
  }
  return caughtSignal;
}

}  // namespace host
