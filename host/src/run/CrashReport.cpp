#include "CrashReport.h"

#include <execinfo.h>
#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <string>

#include "Backtrace.h"

namespace host {
namespace {

constexpr int kMaxFrames = 64;
constexpr size_t kStackSize = size_t{64} * 1024;

// Never destroyed: modules are finalised later.
const std::string* sFile = nullptr;
// A process that the plug-in forks inherits the handlers. How it ends is no concern of the
// session's.
pid_t sProcess = 0;
// For a crash that was an overflow of the stack.
alignas(16) std::array<char, kStackSize> sAlternateStack;

// Opens it when it is needed, which it seldom is. Returns a negative number in another process.
int Report() {
  static int descriptor = -1;
  if (getpid() != sProcess) return -1;
  const auto open = [] {
    return ::open(sFile->c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
  };
  if (descriptor < 0) descriptor = open();
  // The plug-in may have used up all descriptors. This one is the host's own.
  if (descriptor < 0 && errno == EMFILE && close(STDIN_FILENO) == 0) descriptor = open();
  return descriptor;
}

void Write(const char* text) {
  // Nothing is left to do about a failure.
  if (write(Report(), text, std::strlen(text)) < 0) return;
}

void WriteBacktrace(int signal) {
  // Before the backtrace, which may crash, too.
  ::signal(signal, SIG_DFL);
  if (signal != kHangSignal) WriteIfOtherThread();
  std::array<void*, kMaxFrames> frames;
  const int count = backtrace(frames.data(), kMaxFrames);
  // Without this function and the trampoline of the signal.
  constexpr int kOwnFrames = 2;
  if (count > kOwnFrames) {
    backtrace_symbols_fd(frames.data() + kOwnFrames, count - kOwnFrames, Report());
  }
  raise(signal);
}

[[noreturn]] void Terminate() {
  Write(std::current_exception() ? ("uncaught exception: " + DescribeException() + "\n").c_str()
                                 : "std::terminate was called without an exception\n");
  std::abort();
}

}  // namespace

bool WriteIfOtherThread() {
  if (gettid() == getpid()) return false;
  Write(kInAnotherThread);
  Write("\n");
  return true;
}

void InstallCrashReport(const std::filesystem::path& folder) {
  sFile = new std::string(folder / kCrashFile);
  sProcess = getpid();
  // The first call loads a library, which a signal handler must not.
  std::array<void*, 1> frame;
  backtrace(frame.data(), 1);
  const stack_t stack{.ss_sp = sAlternateStack.data(), .ss_flags = 0, .ss_size = kStackSize};
  sigaltstack(&stack, nullptr);
  struct sigaction action {};
  action.sa_handler = WriteBacktrace;
  action.sa_flags = SA_ONSTACK | SA_NODEFER;
  for (const int signal :
       {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGTRAP, SIGSYS, kHangSignal}) {
    struct sigaction present {};
    sigaction(signal, nullptr, &present);
    if (present.sa_handler == SIG_DFL) sigaction(signal, &action, nullptr);
  }
  std::set_terminate(Terminate);
}

}  // namespace host
