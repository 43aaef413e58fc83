#include "Runner.h"

#include <poll.h>
#include <signal.h>

#include <algorithm>
#include <cstdio>
#include <deque>
#include <iterator>
#include <memory>
#include <optional>

#include "Janitor.h"
#include "PlayedProcess.h"
#include "SessionFolder.h"

namespace host {
namespace {

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
  Job(std::shared_ptr<const Session> played, const RunOptions& options, Janitor& janitor)
      : session(std::move(played)),
        folder(session->setUp, options.keep),
        process(*session, options, folder.path(), janitor) {
    std::fflush(nullptr);
    if (process.fork()) PlayAndExit(*session, process.setup(), process.flight());
  }

  std::shared_ptr<const Session> session;
  SessionFolder folder;
  PlayedProcess process;
  std::optional<Played> result;  ///< once the session is over
  std::vector<Event> events;     ///< that the listeners haven't heard of
  bool announced = false;
};

using Jobs = std::deque<std::unique_ptr<Job>>;

size_t CountRunning(const Jobs& jobs) {
  return static_cast<size_t>(
      std::count_if(jobs.begin(), jobs.end(), [](const auto& job) { return !job->result; }));
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
  std::vector<Event> events = job.process.takeEvents();
  std::move(events.begin(), events.end(), std::back_inserter(job.events));
  if (!goesOn) job.result = job.process.result();
}

// Tells the listeners what is new of the session whose turn it is. Returns whether it is over.
bool Tell(Job& job, const std::vector<RunListener*>& listeners) {
  const SessionInfo& session = *job.session;
  for (RunListener* const listener : listeners) {
    if (!job.announced) listener->begin(session);
    for (const Event& event : job.events) listener->take(event);
    if (job.result) listener->end(session, *job.result);
  }
  job.announced = true;
  job.events.clear();
  return job.result.has_value();
}

void PlayAll(const NextSession& next, const RunOptions& options,
             const std::vector<RunListener*>& listeners) {
  Janitor janitor;
  CatchSignals();
  Jobs jobs;
  std::shared_ptr<const Session> session = next();
  while (caughtSignal == 0) {
    for (; session && CountRunning(jobs) < options.jobs; session = next()) {
      jobs.push_back(std::make_unique<Job>(std::move(session), options, janitor));
    }
    if (jobs.empty()) break;
    WaitForReports(jobs);
    for (const auto& job : jobs) Update(*job);
    // It may have ended the processes too, which says nothing of their sessions.
    if (caughtSignal != 0) break;
    while (!jobs.empty() && Tell(*jobs.front(), listeners)) {
      const bool isLast = options.failFast && jobs.front()->result->failed;
      jobs.pop_front();
      if (isLast) return;
    }
  }
}

void Finish(const std::vector<RunListener*>& listeners) {
  for (RunListener* const listener : listeners) listener->finish();
}

}  // namespace

int PlaySessions(const NextSession& next, const RunOptions& options,
                 const std::vector<RunListener*>& listeners) {
  try {
    PlayAll(next, options, listeners);
  } catch (...) {
    // The files are to be whole, with what was played before.
    Finish(listeners);
    throw;
  }
  Finish(listeners);
  return caughtSignal;
}

int PlaySessions(const std::vector<Session>& sessions, const RunOptions& options,
                 const std::vector<RunListener*>& listeners) {
  auto place = sessions.begin();
  const auto next = [&]() -> std::shared_ptr<const Session> {
    if (place == sessions.end()) return nullptr;
    // Without an owner: the caller holds them all.
    return {std::shared_ptr<const Session>(), &*place++};
  };
  return PlaySessions(next, options, listeners);
}

}  // namespace host
