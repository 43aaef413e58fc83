#include "CrashReport.h"

#include <cxxabi.h>
#include <execinfo.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <typeinfo>

#include "TextFile.h"

namespace host {

const int kHangSignal = SIGQUIT;

namespace {

constexpr int kMostFrames = 64;
constexpr size_t kStackSize = size_t{64} * 1024;

int reportDescriptor = -1;
// A process that the plug-in forks inherits the handlers. How it ends is no concern of the
// session's.
pid_t reportProcess = 0;
// For a crash that was an overflow of the stack.
alignas(16) std::array<char, kStackSize> alternateStack;

void Write(const char* text) {
  if (getpid() != reportProcess) return;
  // Nothing is left to do about a failure.
  if (write(reportDescriptor, text, std::strlen(text)) < 0) return;
}

void WriteBacktrace(int signal) {
  // Before the backtrace, which may crash, too.
  ::signal(signal, SIG_DFL);
  if (signal != kHangSignal) NoteThread();
  std::array<void*, kMostFrames> frames;
  const int count = backtrace(frames.data(), kMostFrames);
  // Without this function and the trampoline of the signal.
  constexpr int kOwnFrames = 2;
  if (count > kOwnFrames && getpid() == reportProcess) {
    backtrace_symbols_fd(frames.data() + kOwnFrames, count - kOwnFrames, reportDescriptor);
  }
  raise(signal);
}

// Writes the text of the exception under way, if it has one.
void WriteWhat() {
  try {
    throw;
  } catch (const std::exception& exception) {
    Write(": ");
    // On one line, so that no part of it passes for a frame.
    Write(EscapeControls(exception.what()).c_str());
  } catch (...) {
    return;
  }
}

[[noreturn]] void Terminate() {
  if (const std::type_info* type = abi::__cxa_current_exception_type()) {
    Write("uncaught exception: ");
    int status = 0;
    const char* name = abi::__cxa_demangle(type->name(), nullptr, nullptr, &status);
    Write(name ? name : type->name());
    WriteWhat();
  } else {
    Write("std::terminate was called without an exception");
  }
  Write("\n");
  std::abort();
}

}  // namespace

bool NoteThread() {
  if (gettid() == getpid()) return true;
  Write(kInAnotherThread);
  Write("\n");
  return false;
}

void InstallCrashReport(int descriptor) {
  reportDescriptor = descriptor;
  reportProcess = getpid();
  // The first call loads a library, which a signal handler must not.
  std::array<void*, 1> frame;
  backtrace(frame.data(), 1);
  const stack_t stack{.ss_sp = alternateStack.data(), .ss_flags = 0, .ss_size = kStackSize};
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
