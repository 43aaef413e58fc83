#include "PlayedProcess.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <stdexcept>
#include <utility>

#include "CrashReport.h"
#include "Player.h"
#include "TextFile.h"

namespace host {
namespace {

constexpr int64_t kNanoseconds = 1'000'000'000;
// Of one kind. A plug-in that makes a misuse makes it again and again.
constexpr size_t kMostFindings = 100;
// Of the output that a process leaves behind, in bytes.
constexpr size_t kMostOutput = 65536;
// How long a process that hangs may take to write its backtrace.
constexpr int64_t kTimeToEnd = kNanoseconds;

std::vector<std::string> ReadLinesFrom(const std::filesystem::path& file, off_t place) {
  std::ifstream stream(file, std::ios::binary);
  stream.seekg(place);
  std::string text(kMostOutput, '\0');
  stream.read(text.data(), static_cast<std::streamsize>(text.size()));
  text.resize(static_cast<size_t>(stream.gcount()));
  std::vector<std::string> lines = Split(text, '\n');
  if (lines.back().empty()) lines.pop_back();
  return lines;
}

// Counts each kind for itself, so that those that are allowed don't hide others.
void Keep(std::vector<FoundInSession>& findings, FoundInSession found) {
  const auto count = static_cast<size_t>(
      std::count_if(findings.begin(), findings.end(),
                    [&](const FoundInSession& other) { return other.finding == found.finding; }));
  if (count >= kMostFindings) return;
  if (count + 1 == kMostFindings) found.text += "\n    no more of this kind are told";
  findings.push_back(std::move(found));
}

std::string ReadAll(int descriptor) {
  std::string text;
  std::array<char, 4096> buffer;
  for (ssize_t size = 0; (size = pread(descriptor, buffer.data(), buffer.size(),
                                       static_cast<off_t>(text.size()))) > 0;) {
    text.append(buffer.data(), static_cast<size_t>(size));
  }
  return text;
}

// The frames of a backtrace, one a line, without those that lead from the host into the plug-in.
// Addresses are left out, as they differ from run to run.
std::vector<std::string> Frames(const std::string& report) {
  // As a backtrace names the program.
  const std::string host = program_invocation_name;
  std::vector<std::string> frames = Split(report, '\n');
  const auto leadsIn = [&](const std::string& frame) {
    return frame.empty() || frame.starts_with(host + "(") ||
           frame.find("/libc.so") != std::string::npos;
  };
  while (!frames.empty() && leadsIn(frames.back())) frames.pop_back();
  for (std::string& frame : frames) {
    const size_t address = frame.rfind(")[0x");
    if (address != std::string::npos) frame.erase(address + 1);
  }
  return frames;
}

}  // namespace

bool Played::failed(bool strict) const {
  return !complete ||
         std::any_of(findings.begin(), findings.end(), [&](const FoundInSession& found) {
           return strict || KindOf(found.finding).level == Level::error;
         });
}

PlayedProcess::PlayedProcess(const Session& session, const RunOptions& options, Janitor& janitor)
    : mSession(session),
      mOptions(options),
      mJanitor(janitor),
      mFolder(session.setUp, janitor, options.keep) {
  start();
}

PlayedProcess::~PlayedProcess() {
  if (mProcess > 0) {
    kill(mProcess, SIGKILL);
    waitpid(mProcess, nullptr, 0);
    mJanitor.endGroup(mProcess);
  }
  close(mPipe);
  close(mEnd);
  close(mCrashReport);
}

void PlayedProcess::start() {
  std::array<int, 2> ends{};
  mCrashReport = memfd_create("crash report", MFD_CLOEXEC);
  if (mCrashReport < 0 || pipe2(ends.data(), O_CLOEXEC) != 0) {
    throw std::runtime_error("can't make a pipe");
  }
  std::fflush(nullptr);
  mProcess = fork();
  if (mProcess < 0) throw std::runtime_error("can't make a process");
  if (mProcess == 0) {
    mJanitor.leave();
    close(ends[0]);
    PlayAndExit(mSession, {mOptions.module, mFolder.path(), ends[1], mCrashReport}, *mFlight);
  }
  // In both processes, because either may be the first to need it.
  setpgid(mProcess, mProcess);
  mJanitor.watchGroup(mProcess);
  close(ends[1]);
  mPipe = ends[0];
  fcntl(mPipe, F_SETFL, O_NONBLOCK);
}

bool PlayedProcess::update() {
  const bool mayReport = readReports();
  int status = 0;
  const pid_t ended = waitpid(mProcess, &status, WNOHANG);
  if (ended < 0) throw std::runtime_error("can't wait for a process");
  if (ended == 0) {
    // Its end is near, unless the plug-in has closed the pipe. A closed pipe is always readable.
    if (!mayReport && !std::exchange(mPipeIsClosed, true)) {
      mEnd = static_cast<int>(syscall(SYS_pidfd_open, mProcess, 0));
    }
    endIfHanging();
    return true;
  }
  // What it wrote before it ended. Others may hold the pipe open.
  readReports();
  mJanitor.endGroup(mProcess);
  mProcess = -1;
  addRestOfOutput();
  addHowItEnded(status);
  return false;
}

bool PlayedProcess::readReports() {
  std::array<char, 65536> buffer;
  ssize_t size = 0;
  while ((size = read(mPipe, buffer.data(), buffer.size())) > 0) {
    mUnread.append(buffer.data(), static_cast<size_t>(size));
  }
  size_t place = 0;
  for (Report report; ParseReport(mUnread, place, report);) takeReport(report);
  mUnread.erase(0, place);
  return size != 0;
}

void PlayedProcess::takeReport(const Report& report) {
  const auto found = [&] {
    const size_t end = report.text.find('\n');
    return FoundInSession{
        FindingNamed(std::string_view(report.text).substr(0, end)).value_or(Finding::processEnded),
        report.text.substr(end + 1)};
  };
  switch (report.kind) {
    case ReportKind::line:
      mLines.push_back(report.text);
      break;
    case ReportKind::finding:
      Keep(mFindings, found());
      break;
    case ReportKind::misuse:
      Keep(mMisuses, found());
      break;
    case ReportKind::expected:
      mMisuses.clear();
      break;
    case ReportKind::unloadable:
      throw std::runtime_error(report.text);
    case ReportKind::played:
      mPlayed = true;
      break;
    case ReportKind::destroying:
      mOver = true;
      break;
    case ReportKind::end:
      mEnded = true;
      break;
  }
}

void PlayedProcess::endIfHanging() {
  const int64_t began = mFlight->callBegan;
  const int64_t now = MonotonicNow();
  if (mAskedToEnd != 0) {
    if (now - mAskedToEnd > kTimeToEnd) kill(mProcess, SIGKILL);
  } else if (began != 0 &&
             now - std::max(began, mTimeRunsSince) > mOptions.timeout.count() * kNanoseconds) {
    mAskedToEnd = now;
    kill(mProcess, kHangSignal);
  }
}

void PlayedProcess::addRestOfOutput() {
  for (const auto& line : ReadLinesFrom(mFolder.path() / kStdoutFile, mFlight->stdoutTaken)) {
    mLines.push_back(TimelineLine("", Actor::plugIn, StdoutText(line)));
  }
  for (const auto& line : ReadLinesFrom(mFolder.path() / kStderrFile, mFlight->stderrTaken)) {
    mLines.push_back(TimelineLine("", Actor::plugIn, StderrText(line)));
  }
}

void PlayedProcess::addHowItEnded(int status) {
  const char* const hook = mFlight->hook.data();
  const std::string mainPlace = *hook ? fmt::format("in the {}", hook) : "in the host itself";
  std::vector<std::string> frames = Frames(ReadAll(mCrashReport));
  const bool inAnotherThread = std::erase(frames, kInAnotherThread) > 0;
  const std::string place = inAnotherThread ? kInAnotherThread : mainPlace;
  const auto add = [&](Finding finding, const std::string& what) {
    // The flight record is the main thread's.
    const std::string whose =
        inAnotherThread ? fmt::format("the main thread was {}, ", mainPlace) : "";
    mFindings.push_back({finding, fmt::format("{}\n    {}{}", what, whose, where())});
    for (const std::string& frame : frames) mFindings.back().text += "\n    " + frame;
  };
  if (mAskedToEnd != 0) {
    add(Finding::timeout,
        fmt::format("the plug-in doesn't return within {} s {}", mOptions.timeout.count(), place));
  } else if (WIFSIGNALED(status)) {
    add(Finding::crash,
        fmt::format("the process crashed {}: {}", place, strsignal(WTERMSIG(status))));
  } else if (WEXITSTATUS(status) == kPlayedExitCode && !mEnded) {
    add(Finding::processEnded,
        "the process can't tell what came of the session: the plug-in has closed the host's "
        "descriptors");
  } else if (!mOver || !mEnded || WEXITSTATUS(status) != kPlayedExitCode) {
    add(Finding::processEnded,
        fmt::format("the process ended {} with code {}", place, WEXITSTATUS(status)));
  }
}

std::string PlayedProcess::where() const {
  const size_t played = std::min(static_cast<size_t>(mFlight->stepsPlayed), mSession.steps.size());
  const size_t left = mSession.steps.size() - played;
  return fmt::format("tick {}, host call {}, step {}, {} of {} steps left", mFlight->tick,
                     mFlight->hostCall[0] ? mFlight->hostCall.data() : "none", mFlight->step.data(),
                     left, mSession.steps.size());
}

std::vector<std::string> PlayedProcess::takeLines() {
  return std::exchange(mLines, {});
}

Played PlayedProcess::result() {
  Played played;
  played.findings = mFindings;
  played.findings.insert(played.findings.end(), mMisuses.begin(), mMisuses.end());
  std::erase_if(played.findings, [&](const FoundInSession& found) {
    return mOptions.allowed.contains(found.finding);
  });
  played.complete = mPlayed;
  if (mOptions.keep) played.folder = mFolder.path();
  return played;
}

}  // namespace host
