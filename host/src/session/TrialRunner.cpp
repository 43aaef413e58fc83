#include "TrialRunner.h"

#include <fmt/format.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>

#include <memory>
#include <utility>

#include "CrashReport.h"
#include "FolderSnapshot.h"
#include "PlayedProcess.h"

namespace host {

TrialRunner::TrialRunner(const Session& session, const RunOptions& options,
                         std::filesystem::path folder, Host& host)
    : mSession(session), mOptions(options), mFolder(std::move(folder)), mHost(host) {
  if (!mSession.makeTrials) return;
  mTrials = mSession.makeTrials();
  mHost.beforeEntries([this] { playDue(); });
}

void TrialRunner::playDue() {
  const auto isDue = [this] {
    return mNext < mTrials.size() && mTrials[mNext].entry <= mHost.census.entry();
  };
  if (!isDue()) return;
  mHost.timeline.drain();
  const FolderSnapshot snapshot(mFolder);
  while (isDue()) {
    if (play(mNext++)) return;
    snapshot.restore();
  }
}

// Returns true in the process that plays the trial.
bool TrialRunner::play(size_t trial) {
  auto process = std::make_unique<PlayedProcess>(mSession, mOptions, mFolder, nullptr);
  if (process->fork()) {
    const PlayedProcess& self = *process.release();
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    mHost.beforeEntries(nullptr);
    mHost.timeline.mute();
    mHost.moveTo(self.setup().reportPipe, self.flight());
    InstallCrashReport(self.setup().crashReport);
    KeepFromForks(self.flight());
    mIsTrial = !mHost.faults.waitsForCall();
    mTrials[trial].plant(mHost);
    return true;
  }
  while (process->update()) {
    constexpr int kMilliseconds = 20;
    pollfd awaited{process->awaited(), POLLIN, 0};
    poll(&awaited, 1, kMilliseconds);
  }
  for (const FoundInSession& found : process->result().findings) {
    mHost.send(ReportKind::trial,
               fmt::format("{}\n{}\n{}", trial, KindOf(found.finding).name, found.text));
  }
  return false;
}

void TrialRunner::checkCallHasFailed() const {
  if (!mIsTrial || !mHost.faults.waitsForCall()) return;
  mHost.report(Finding::setup, "the call that is to fail never came" + mHost.where());
}

}  // namespace host
