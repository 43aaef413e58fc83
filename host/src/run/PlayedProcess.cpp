#include "PlayedProcess.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <utility>

#include "Backtrace.h"
#include "CrashReport.h"
#include "EventJson.h"
#include "Player.h"
#include "TextFile.h"
#include "Timeline.h"

namespace host {
namespace {

constexpr int64_t kNanoseconds = 1'000'000'000;
// Of each output that a process leaves behind, in bytes. It may have printed without end.
constexpr uintmax_t kMostOutput = 262'144;
// How long a process that hangs may take to write its backtrace.
constexpr int64_t kTimeToEnd = kNanoseconds;

// What a process has written to a file beyond what its timeline shows.
struct RestOfOutput {
  uintmax_t leftOut = 0;  ///< bytes at its beginning
  std::vector<std::string> lines;
};

RestOfOutput ReadRest(const std::filesystem::path& file, off_t taken) {
  RestOfOutput rest;
  std::error_code error;
  const uintmax_t size = std::filesystem::file_size(file, error);
  const auto begin = static_cast<uintmax_t>(taken);
  if (error || size <= begin) return rest;
  // What it wrote last says most about its end.
  if (size - begin > kMostOutput) rest.leftOut = size - begin - kMostOutput;
  std::ifstream stream(file, std::ios::binary);
  stream.seekg(static_cast<std::streamoff>(begin + rest.leftOut));
  for (std::string line; std::getline(stream, line);) rest.lines.push_back(line);
  return rest;
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

JudgeRules RulesOf(const Session& session, const RunOptions& options) {
  return {session.knownIssues, options.allowed, session.host.tolerant, options.strict};
}

}  // namespace

PlayedProcess::PlayedProcess(const Session& session, const RunOptions& options,
                             std::filesystem::path folder, Janitor& janitor)
    : mSession(session),
      mOptions(options),
      mFolder(std::move(folder)),
      mJanitor(janitor),
      mJudge(RulesOf(session, options)) {}

PlayedProcess::~PlayedProcess() {
  if (mProcess > 0) {
    kill(mProcess, SIGKILL);
    waitpid(mProcess, nullptr, 0);
    mJanitor.cleanUpAfter(mProcess);
  }
  closeDescriptors();
}

void PlayedProcess::closeDescriptors() {
  for (int* const descriptor : {&mPipe, &mEnd, &mCrashReport}) {
    if (*descriptor >= 0) close(std::exchange(*descriptor, -1));
  }
}

bool PlayedProcess::fork() {
  std::array<int, 2> ends{};
  mCrashReport = memfd_create("crash report", MFD_CLOEXEC);
  if (mCrashReport < 0 || pipe2(ends.data(), O_CLOEXEC) != 0) {
    throw std::runtime_error("can't make a pipe");
  }
  mProcess = ::fork();
  if (mProcess < 0) throw std::runtime_error("can't make a process");
  const bool isNew = mProcess == 0;
  // The plug-in finds the font manager in its own session.
  if (isNew) setsid();
  close(ends[isNew ? 0 : 1]);
  mPipe = ends[isNew ? 1 : 0];
  if (!isNew) fcntl(mPipe, F_SETFL, O_NONBLOCK);
  if (!isNew) mJanitor.watch(mProcess);
  if (isNew) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    InstallCrashReport(mCrashReport);
    KeepFromForks(*mFlight);
  }
  return isNew;
}

bool PlayedProcess::update() {
  const bool mayReport = readReports();
  int status = 0;
  const pid_t ended = waitpid(mProcess, &status, WNOHANG);
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
  mJanitor.cleanUpAfter(mProcess);
  mProcess = -1;
  addRestOf(kStdoutFile, mFlight->stdoutTaken, StdoutText);
  addRestOf(kStderrFile, mFlight->stderrTaken, StderrText);
  endRunning();
  addHowItEnded(status);
  // The session may have to wait for others before it is its turn to be shown.
  closeDescriptors();
  return false;
}

bool PlayedProcess::readReports() {
  std::array<char, 65536> buffer;
  ssize_t size = 0;
  while ((size = read(mPipe, buffer.data(), buffer.size())) > 0) {
    mUnread.append(buffer.data(), static_cast<size_t>(size));
  }
  for (Event& event : TakeEvents(mUnread)) take(std::move(event));
  return size != 0;
}

void PlayedProcess::take(Event event) {
  switch (event.kind) {
    case EventKind::unloadable:
      throw std::runtime_error(event.text);
    case EventKind::destroying:
      mOver = true;
      break;
    case EventKind::finished:
      mFinished = true;
      break;
    case EventKind::begin:
      mRunning.push_back(event);
      break;
    case EventKind::end:
      if (!mRunning.empty()) mRunning.pop_back();
      break;
    case EventKind::fact:
      // Another thread doesn't know it.
      if (event.place.empty() && event.step > 0) {
        event.place = mSession.steps[static_cast<size_t>(event.step) - 1].place;
      }
      break;
    default:
      break;
  }
  std::vector<Event> shown = mJudge.take(std::move(event));
  std::move(shown.begin(), shown.end(), std::back_inserter(mEvents));
}

void PlayedProcess::endIfHanging() {
  const int64_t began = mFlight->watchdogStart;
  const int64_t now = MonotonicNow();
  if (mAskedToEnd != 0) {
    if (now - mAskedToEnd > kTimeToEnd) kill(mProcess, SIGKILL);
  } else if (began != 0 && now - began > mOptions.timeout.count() * kNanoseconds) {
    mAskedToEnd = now;
    kill(mProcess, kHangSignal);
  }
}

void PlayedProcess::addRestOf(const char* file, off_t taken,
                              std::string (*describe)(std::string_view)) {
  const RestOfOutput rest = ReadRest(mFolder / file, taken);
  if (rest.leftOut > 0) addOutput(describe(fmt::format("({} bytes are left out)", rest.leftOut)));
  for (const std::string& line : rest.lines) addOutput(describe(line));
}

void PlayedProcess::addOutput(std::string text) {
  Event entry(HeadOf(*mFlight));
  // It stood in the output before, whatever call is under way.
  entry.call = {};
  // Nothing had happened in the hook before.
  if (!entry.hook.empty() && (mRunning.empty() || mRunning.back().name != entry.hook)) {
    Event begin = entry;
    begin.kind = EventKind::begin;
    begin.name = std::exchange(begin.hook, runningHook());
    take(std::move(begin));
  }
  entry.text = withoutFolder(std::move(text));
  // As through the pipe, which takes only UTF-8.
  take(EventFrom(Json::parse(Dump(ToJson(entry)))));
}

std::string PlayedProcess::runningHook() const {
  const auto found = std::find_if(mRunning.rbegin(), mRunning.rend(),
                                  [](const Event& begin) { return begin.span == SpanKind::hook; });
  return found == mRunning.rend() ? "" : found->name;
}

std::string PlayedProcess::withoutFolder(std::string text) const {
  ReplaceAll(text, mFolder.string() + "/", "");
  return text;
}

// What had begun when the process ended.
void PlayedProcess::endRunning() {
  for (; !mRunning.empty(); mRunning.pop_back()) {
    Event end = mRunning.back();
    end.kind = EventKind::end;
    mEvents.push_back(std::move(end));
  }
}

void PlayedProcess::addHowItEnded(int status) {
  const char* const hook = mFlight->hook;
  const auto limit = mOptions.timeout.count();
  if (mAskedToEnd != 0) {
    addEnd(Finding::timeout,
           *hook ? fmt::format("the plug-in doesn't return within {} s", limit)
                 : fmt::format("the host itself is held up for {} s", limit),
           "");
  } else if (WIFSIGNALED(status)) {
    addEnd(Finding::crash, "the process crashed", fmt::format(": {}", strsignal(WTERMSIG(status))));
  } else if (WEXITSTATUS(status) == kPlayedExitCode && !mFinished) {
    addEnd(Finding::processEnded,
           "the process can't tell what came of the session: the plug-in has closed the host's "
           "descriptors",
           "");
  } else if (!mOver || !mFinished || WEXITSTATUS(status) != kPlayedExitCode) {
    addEnd(Finding::processEnded, "the process ended",
           fmt::format(" with code {}", WEXITSTATUS(status)));
  }
}

void PlayedProcess::addEnd(Finding finding, std::string what, const std::string& how) {
  std::vector<std::string> frames = Split(ReadAll(mCrashReport), "\n");
  const bool inAnotherThread = std::erase(frames, kInAnotherThread) > 0;
  CleanFrames(frames);
  const char* const hook = mFlight->hook;
  const std::string place = *hook ? fmt::format("in the {}", hook) : "in the host itself";
  Event fact(HeadOf(*mFlight));
  if (inAnotherThread) fact.call = {};
  fact.kind = EventKind::fact;
  fact.finding = finding;
  if (finding != Finding::timeout || *hook)
    what += " " + (inAnotherThread ? kInAnotherThread : place);
  fact.text = what + how;
  // The flight record is the main thread's.
  fact.where =
      inAnotherThread ? fmt::format("the main thread was {}, {}", place, where()) : where();
  for (const std::string& frame : frames) fact.where += "\n    " + withoutFolder(frame);
  take(std::move(fact));
}

std::string PlayedProcess::where() const {
  const size_t played = std::min(static_cast<size_t>(mFlight->stepsPlayed), mSession.stepCount);
  const size_t left = mSession.stepCount - played;
  return fmt::format("tick {}, host call {}, step {}, {} of {} steps left", mFlight->tick.load(),
                     mFlight->hostCall[0] ? mFlight->hostCall.data() : "none", mFlight->step.data(),
                     left, mSession.stepCount);
}

std::vector<Event> PlayedProcess::takeEvents() {
  return std::exchange(mEvents, {});
}

Played PlayedProcess::result() {
  Played played = mJudge.finish();
  if (mOptions.keep) played.folder = mFolder;
  return played;
}

}  // namespace host
