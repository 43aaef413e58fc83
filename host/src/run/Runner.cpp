#include "Runner.h"

#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>

#include <algorithm>
#include <cstdio>
#include <deque>
#include <memory>
#include <optional>

#include "PlayedProcess.h"

namespace host {
namespace {

volatile sig_atomic_t sCaughtSignal = 0;

void CatchSignals() {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    // `nohup` and the like have it ignored.
    if (::signal(signal, [](int caught) { sCaughtSignal = caught; }) == SIG_IGN) {
      ::signal(signal, SIG_IGN);
    }
  }
}

struct Job {
  Job(std::shared_ptr<const Session> session, const RunOptions& options)
      : process(std::move(session), options) {}

  PlayedProcess process;
  bool announced = false;  ///< to the listeners
};

using Jobs = std::deque<Job>;

size_t CountRunning(const Jobs& jobs) {
  return static_cast<size_t>(std::count_if(jobs.begin(), jobs.end(),
                                           [](const Job& job) { return !job.process.result(); }));
}

// Waits until a process ends, but not long: they report in the meantime. Waking up for each report
// would take longer than the session.
void Wait(const Jobs& jobs) {
  constexpr int kMilliseconds = 5;
  std::vector<pollfd> ends;
  for (const Job& job : jobs) ends.push_back({job.process.end(), POLLIN, 0});
  poll(ends.data(), ends.size(), kMilliseconds);
}

// Tells the listeners what is new of the session whose turn it is. Returns whether it is over.
bool Tell(Job& job, const std::vector<RunListener*>& listeners) {
  const SessionInfo& session = job.process.session();
  const std::vector<Event> events = job.process.takeEvents();
  const std::optional<Played>& result = job.process.result();
  for (RunListener* const listener : listeners) {
    if (!job.announced) listener->begin(session);
    for (const Event& event : events) listener->take(event);
    if (result) listener->end(session, *result);
  }
  job.announced = true;
  return result.has_value();
}

void PlayAll(const NextSession& next, const RunOptions& options,
             const std::vector<RunListener*>& listeners) {
  // What a session leaves behind becomes a child of this process.
  prctl(PR_SET_CHILD_SUBREAPER, 1);
  CatchSignals();
  Jobs jobs;
  std::shared_ptr<const Session> session = next();
  while (sCaughtSignal == 0) {
    for (; session && CountRunning(jobs) < options.jobs; session = next()) {
      std::fflush(nullptr);
      jobs.emplace_back(std::move(session), options);
    }
    if (jobs.empty()) break;
    Wait(jobs);
    for (Job& job : jobs) job.process.update();
    // It may have ended the processes too, which says nothing of their sessions.
    if (sCaughtSignal != 0) break;
    while (!jobs.empty() && Tell(jobs.front(), listeners)) {
      const bool isLast = options.failFast && jobs.front().process.result()->failed;
      jobs.pop_front();
      if (isLast) return;
    }
  }
}

}  // namespace

NextSession EachOf(const std::vector<Session>& sessions) {
  return [place = sessions.begin(), end = sessions.end()]() mutable {
    // Without an owner.
    return place == end ? nullptr
                        : std::shared_ptr<const Session>(std::shared_ptr<Session>(), &*place++);
  };
}

void PlaySessions(const NextSession& next, const RunOptions& options,
                  const std::vector<RunListener*>& listeners) {
  const auto finish = [&] {
    for (RunListener* const listener : listeners) listener->finish();
  };
  try {
    PlayAll(next, options, listeners);
  } catch (...) {
    // The files are to be whole, with what was played before.
    finish();
    throw;
  }
  finish();
}

int CaughtSignal() {
  return sCaughtSignal;
}

}  // namespace host
