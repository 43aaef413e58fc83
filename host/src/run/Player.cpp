#include "Player.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdlib>

#include "Backtrace.h"
#include "Runner.h"
#include "Steps.h"
#include "TextFile.h"

namespace host {
namespace {

constexpr rlim_t kMaxBytesOfAFile = rlim_t{256} * 1024 * 1024;

// Tells an `exit` of the host's from one of the plug-in's. Only the lowest byte, which is 0, leaves
// the process.
constexpr int kHostsExit = 1 << 30;

bool sPlaysASession = false;
// The session, if all its steps were played.
const Session* sPlayed = nullptr;

// The session must have used all that it set up, if only while the modules were finalised.
void CheckNothingIsLeft(Host& host, const Session& session) {
  const HostSettings& settings = host.settings();
  if (!settings.tolerant || settings.isTrial) {
    for (const std::string& function : host.faults.unmet(settings.tolerant)) {
      host.report(Finding::setup,
                  fmt::format("{} wasn't called as often as it was to fail", function));
    }
  }
  for (const auto& check : session.finalChecks) check(host);
}

// Runs while the system finalises the modules. What it registers runs when they all are, the
// plug-in's too.
[[gnu::destructor]] void FinishAfterTheLastModule() {
  if (!sPlaysASession) return;
  const auto finish = [](int status, void*) {
    if (TellIfOtherThread() || status != kHostsExit) return;
    Host& host = TheHost();
    host.finish();
    if (sPlayed) CheckNothingIsLeft(host, *sPlayed);
    host.timeline.tell(EventKind::finished);
    host.flight().isFinished = true;
  };
  on_exit(finish, nullptr);
}

void PlaySession(const Session& session, Host& host) {
  for (const auto& preparation : session.preparations) preparation(host);
  for (const Step& step : session.steps) {
    ++host.flight().stepNumber;
    if (step.quits && host.settings().tolerant && session.settles) {
      host.beginStep(kSettling);
      for (const auto& settle : session.settling) settle(host);
    }
    PlayStep(step, host);
  }
  host.timeline.drain();
  sPlayed = &session;
  host.timeline.tell(EventKind::played);
}

// What is read from the terminal is for the user's shell, and a signal of the terminal for the
// process that waits.
void DetachFromTerminal() {
  // The plug-in finds the font manager in its own session.
  setsid();
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  // So that a process that leaves the plug-in's group, and whose parent ends, is still known to be
  // this session's.
  prctl(PR_SET_CHILD_SUBREAPER, 1);
  // What the plug-in writes without end must not fill the disk.
  const rlimit max{kMaxBytesOfAFile, kMaxBytesOfAFile};
  setrlimit(RLIMIT_FSIZE, &max);
  const int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
  dup2(nothing, STDIN_FILENO);
  if (nothing != STDIN_FILENO) close(nothing);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE}) ::signal(signal, SIG_DFL);
}

}  // namespace

void PlayAndExit(const Session& session, const RunOptions& options,
                 const std::filesystem::path& folder, int pipe, FlightRecord& flight) {
  DetachFromTerminal();
  if (chdir(folder.c_str()) != 0) _exit(EXIT_FAILURE);
  InstallCrashReport(folder);
  KeepFromForks(flight);
  setenv("HOME", folder.c_str(), 1);
  for (const auto& [name, text] : session.environment) {
    std::string resolved = text;
    ReplaceAll(resolved, "${session}", folder.string());
    setenv(name.c_str(), resolved.c_str(), 1);
  }
  sPlaysASession = true;
  Host& host = TheHost();
  try {
    host.prepare(session.host, options.module, pipe, flight);
    PlaySession(session, host);
  } catch (const SessionEnded&) {
    // The finding was reported before it was thrown.
  } catch (const std::exception& error) {
    host.report(Finding::setup, fmt::format("the session can't go on: {}", error.what()));
  }
  host.beginDestructors();
  std::exit(kHostsExit);
}

}  // namespace host
