#include "PlayedProcess.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <signal.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <fstream>
#include <iterator>
#include <set>
#include <stdexcept>
#include <utility>

#include "Backtrace.h"
#include "Player.h"
#include "TextFile.h"
#include "VirtualTime.h"

namespace host {
namespace {

constexpr int64_t kNanoseconds = 1'000'000'000;
// Of each output that a process leaves behind, in bytes. It may have printed without end.
constexpr std::streamoff kMaxOutput = 262'144;
// Enough for what a session tells between two looks at its pipe.
constexpr int kPipeSize = 1'048'576;
// How long a process that hangs may take to write its backtrace.
constexpr int64_t kTimeToEnd = kNanoseconds;

JudgeRules RulesOf(const Session& session, const RunOptions& options) {
  JudgeRules rules{session.knownIssues, options.allowed, session.host.tolerant, options.strict};
  rules.knownIssues.insert(rules.knownIssues.end(), options.knownIssues.begin(),
                           options.knownIssues.end());
  return rules;
}

// Lists the child processes of this one, also those that have ended. None where the kernel doesn't
// tell.
std::set<pid_t> Children() {
  std::ifstream list("/proc/thread-self/children");
  return {std::istream_iterator<pid_t>(list), {}};
}

// Those that no session has left behind. This program may have taken the place of a shell that had
// some.
std::set<pid_t>& OwnChildren() {
  static std::set<pid_t> children = Children();
  return children;
}

}  // namespace

PlayedProcess::PlayedProcess(std::shared_ptr<const Session> session, const RunOptions& options)
    : mSession(std::move(session)),
      mOptions(options),
      mFolder(mSession->setUp, options.keep),
      mFlight(ShareFlightRecord()),
      mJudge(RulesOf(*mSession, options)) {
  std::set<pid_t>& children = OwnChildren();
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("can't make a pipe");
  mWatch = TakeWatch();
  mProcess = fork();
  if (mProcess < 0) throw std::runtime_error("can't make a process");
  close(ends[mProcess == 0 ? 0 : 1]);
  if (mProcess == 0) PlayAndExit(*mSession, mOptions, mFolder.path(), ends[1], *mFlight);
  children.insert(mProcess);
  mPipe = ends[0];
  fcntl(mPipe, F_SETFL, O_NONBLOCK);
  fcntl(mPipe, F_SETPIPE_SZ, kPipeSize);
  mEnd = static_cast<int>(syscall(SYS_pidfd_open, mProcess, 0));
}

PlayedProcess::~PlayedProcess() {
  if (mProcess < 0) return;
  kill(mProcess, SIGKILL);
  waitpid(mProcess, nullptr, 0);
  cleanUp();
}

void PlayedProcess::cleanUp() {
  kill(-mProcess, SIGKILL);
  OwnChildren().erase(std::exchange(mProcess, -1));
  // Each that ends leaves its own children to this process.
  for (bool goesOn = true; std::exchange(goesOn, false);) {
    for (const pid_t left : Children()) {
      if (OwnChildren().contains(left)) continue;
      kill(left, SIGKILL);
      waitpid(left, nullptr, 0);
      goesOn = true;
    }
  }
  GiveBackWatch(mWatch);
  for (int* const descriptor : {&mPipe, &mEnd}) {
    if (*descriptor >= 0) close(std::exchange(*descriptor, -1));
  }
}

void PlayedProcess::update() {
  if (mResult) return;
  readReports();
  int status = 0;
  if (waitpid(mProcess, &status, WNOHANG) == 0) return endIfHanging();
  // What it wrote before it ended. Others may hold the pipe open.
  readReports();
  cleanUp();
  for (size_t i = 0; i < kOutputs.size(); ++i) addRestOf(kOutputs[i], mFlight->outputTaken[i]);
  endRunning();
  addHowItEnded(status);
  mResult = mJudge.finish();
  if (mOptions.keep) mResult->folder = mFolder.path();
}

void PlayedProcess::readReports() {
  std::array<char, 65536> buffer;
  ssize_t size = 0;
  while ((size = read(mPipe, buffer.data(), buffer.size())) > 0) {
    mUnread.append(buffer.data(), static_cast<size_t>(size));
  }
  for (Event& event : TakeEvents(mUnread)) take(std::move(event));
}

void PlayedProcess::take(Event event) {
  if (event.kind == EventKind::unloadable) throw std::runtime_error(event.text);
  if (event.kind == EventKind::begin) mRunning.push_back(event);
  if (event.kind == EventKind::end && !mRunning.empty()) mRunning.pop_back();
  if (event.kind == EventKind::fact && event.place.empty() && event.step > 0) {
    // Another thread knows only the number, which is that of the outermost step.
    event.place = mSession->steps[static_cast<size_t>(event.step) - 1].place;
  }
  // Also in what another thread told, or what was found after the end.
  ReplaceAll(event.text, mFolder.path().string() + "/", "");
  std::vector<Event> shown = mJudge.take(std::move(event));
  std::move(shown.begin(), shown.end(), std::back_inserter(mEvents));
}

void PlayedProcess::endIfHanging() {
  const int64_t began = mFlight->watchdogStart;
  const int64_t now = MonotonicNow();
  if (mAskedToEnd != 0) {
    if (now - mAskedToEnd > kTimeToEnd) kill(mProcess, SIGKILL);
  } else if (began != 0 && now - began > mOptions.timeoutSeconds * kNanoseconds) {
    mAskedToEnd = now;
    kill(mProcess, kHangSignal);
  }
}

void PlayedProcess::addRestOf(const Output& output, off_t taken) {
  std::ifstream stream(mFolder.path() / output.file, std::ios::binary | std::ios::ate);
  // What it wrote last says most about its end.
  const std::streamoff begin = std::max<std::streamoff>(taken, stream.tellg() - kMaxOutput);
  if (begin > taken) {
    addOutput(fmt::format("{}({} bytes are left out)", output.says, begin - taken));
  }
  stream.seekg(begin);
  for (std::string line; std::getline(stream, line);) addOutput(output.says + line);
}

void PlayedProcess::addOutput(std::string text) {
  Event entry(EventKind::entry, headAtEnd());
  std::string hook;
  if (!mRunning.empty()) {
    hook = mRunning.back().what == kHook ? mRunning.back().name : mRunning.back().hook;
  }
  // Nothing had happened in the hook before.
  if (!entry.hook.empty() && entry.hook != hook) {
    Event begin(EventKind::begin, entry);
    begin.what = kHook;
    begin.name = std::exchange(begin.hook, hook);
    take(std::move(begin));
  }
  entry.text = std::move(text);
  take(std::move(entry));
}

EventHead PlayedProcess::headAtEnd() const {
  EventHead head = HeadOf(*mFlight);
  head.place = mFlight->step.data();
  return head;
}

// What had begun when the process ended.
void PlayedProcess::endRunning() {
  for (; !mRunning.empty(); mRunning.pop_back()) {
    mEvents.push_back(mRunning.back());
    mEvents.back().kind = EventKind::end;
  }
}

void PlayedProcess::addHowItEnded(int status) {
  const int64_t limit = mOptions.timeoutSeconds;
  if (mAskedToEnd != 0) {
    addEnd(Finding::timeout,
           *mFlight->hook ? fmt::format("the plug-in doesn't return within {} s", limit)
                          : fmt::format("the host itself is held up for {} s", limit),
           "");
  } else if (WIFSIGNALED(status)) {
    addEnd(Finding::crash, "the process crashed", fmt::format(": {}", strsignal(WTERMSIG(status))));
  } else if (!mFlight->isFinished || WEXITSTATUS(status) != 0) {
    // A sanitizer or valgrind has a code of its own for a process that has finished.
    addEnd(Finding::processEnded, "the process ended",
           fmt::format(" with code {}", WEXITSTATUS(status)));
  } else if (!mJudge.isFinished()) {
    addEnd(Finding::processEnded,
           "the process can't tell what came of the session: the plug-in has closed the host's "
           "descriptors",
           "");
  }
}

void PlayedProcess::addEnd(Finding finding, std::string what, const std::string& how) {
  const auto [inAnotherThread, lines] = ReadCrashReport(mFolder.path());
  const std::string place = "in " + mFlight->inWhat();
  Event fact(EventKind::fact, headAtEnd());
  fact.name = KindOf(finding).name;
  // A text about the host itself says where it was, except that of a crash.
  if (inAnotherThread || *mFlight->hook || finding == Finding::crash) {
    what += " " + (inAnotherThread ? "in another thread" : place);
  }
  fact.text = what + how + "\n    ";
  if (inAnotherThread) {
    // The flight record is the main thread's.
    fact.text += fmt::format("the main thread was {}, ", place);
  } else if (mFlight->inHostCall) {
    const std::string_view call = mFlight->hostCall.data();
    fact.call.function = call.substr(0, call.find('('));
  }
  fact.text += fmt::format("{} ({} of {})", mFlight->where(), mFlight->stepNumber.load(),
                           mSession->stepCount);
  for (const std::string& line : lines) fact.text += "\n    " + line;
  take(std::move(fact));
}

}  // namespace host
