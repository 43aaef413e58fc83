#include "TrialRunner.h"

#include <fmt/format.h>
#include <poll.h>

#include <memory>
#include <utility>

#include "EventJson.h"
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
  // The fork gets an empty record in the place of this process's, see `KeepFromForks`.
  mHost.copyFlight(process->flight());
  if (process->fork()) {
    // To the end of the process, where a sanitizer looks for leaks.
    static const PlayedProcess* const self = process.release();
    mHost.beforeEntries(nullptr);
    mHost.moveTo(self->reportPipe(), self->flight());
    mPlayed = &mTrials[trial];
    mPlayed->plant(mHost);
    return true;
  }
  // The trial has a time limit of its own.
  mHost.limitTime(false);
  while (process->update()) {
    constexpr int kMilliseconds = 20;
    pollfd awaited{process->awaited(), POLLIN, 0};
    poll(&awaited, 1, kMilliseconds);
  }
  mHost.limitTime(true);
  const Played played = process->result();
  if (!played.failed) return false;
  // None is left if `--allow` covers what ended it.
  for (const FoundInSession& found : played.findings) {
    mHost.send(ReportKind::trial, fmt::format("{}\n{}", trial, ToReport(found)));
  }
  return false;
}

void TrialRunner::checkCallHasCome() {
  const Trial* const played = std::exchange(mPlayed, nullptr);
  if (!played || !played->isAwaited(mHost)) return;
  mHost.report(Finding::setup, "the call that is to go wrong never came" + mHost.where());
}

}  // namespace host
