#include "Backtrace.h"

#include <cxxabi.h>
#include <execinfo.h>
#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <exception>
#include <string_view>
#include <typeinfo>

#include "TextFile.h"

namespace host {
namespace {

constexpr int kMaxFrames = 64;
constexpr size_t kStackSize = size_t{64} * 1024;
// In the session folder.
constexpr char kCrashFile[] = ".crash";
// A line of the crash report.
constexpr char kInAnotherThread[] = "in another thread";

int sCrashFile = -1;
// A process that the plug-in forks inherits the handlers. How it ends is no concern of the
// session's.
pid_t sProcess = 0;
// For a crash that was an overflow of the stack.
alignas(16) std::array<char, kStackSize> sAlternateStack;

// Returns a negative number in another process.
int CrashFile() {
  return getpid() == sProcess ? sCrashFile : -1;
}

void TellOfCrash(int signal) {
  // Before the backtrace, which may crash, too.
  ::signal(signal, SIG_DFL);
  if (signal != kHangSignal) TellIfOtherThread();
  std::array<void*, kMaxFrames> frames;
  const int count = backtrace(frames.data(), kMaxFrames);
  // Without this function and the trampoline of the signal.
  constexpr int kOwnFrames = 2;
  if (count > kOwnFrames) {
    backtrace_symbols_fd(frames.data() + kOwnFrames, count - kOwnFrames, CrashFile());
  }
  raise(signal);
}

[[noreturn]] void Terminate() {
  WriteAll(CrashFile(), std::current_exception()
                            ? "uncaught exception: " + DescribeException() + "\n"
                            : "std::terminate was called without an exception\n");
  std::abort();
}

bool IsAroundPlugin(const std::string& frame) {
  // As a backtrace names the program.
  static const std::string program = program_invocation_name;
  return frame.empty() || frame.starts_with(program + "(") ||
         frame.find("/libc.so") != std::string::npos;
}

// Leaves out the frames that lead from this program into the plug-in, at the end, and addresses,
// which differ from run to run.
void CleanFrames(std::vector<std::string>& frames) {
  while (!frames.empty() && IsAroundPlugin(frames.back())) frames.pop_back();
  for (std::string& frame : frames) {
    for (const std::string_view address : {") [0x", ")[0x"}) {
      const size_t place = frame.rfind(address);
      if (place != std::string::npos) frame.erase(place + 1);
    }
  }
}

}  // namespace

void InstallCrashReport(const std::filesystem::path& folder) {
  sCrashFile = open((folder / kCrashFile).c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
  sProcess = getpid();
  // The first call loads a library, which a signal handler must not.
  std::array<void*, 1> frame;
  backtrace(frame.data(), 1);
  const stack_t stack{.ss_sp = sAlternateStack.data(), .ss_flags = 0, .ss_size = kStackSize};
  sigaltstack(&stack, nullptr);
  struct sigaction action {};
  action.sa_handler = TellOfCrash;
  action.sa_flags = SA_ONSTACK | SA_NODEFER;
  for (const int signal :
       {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGTRAP, SIGSYS, kHangSignal}) {
    struct sigaction present {};
    sigaction(signal, nullptr, &present);
    if (present.sa_handler == SIG_DFL) sigaction(signal, &action, nullptr);
  }
  std::set_terminate(Terminate);
}

bool TellIfOtherThread() {
  if (gettid() == getpid()) return false;
  WriteAll(CrashFile(), kInAnotherThread);
  WriteAll(CrashFile(), "\n");
  return true;
}

CrashReport ReadCrashReport(const std::filesystem::path& folder) {
  CrashReport report;
  report.lines = ReadLines(folder / kCrashFile);
  report.inAnotherThread = std::erase(report.lines, kInAnotherThread) > 0;
  CleanFrames(report.lines);
  return report;
}

std::vector<std::string> Backtrace() {
  std::array<void*, kMaxFrames> addresses;
  const int count = backtrace(addresses.data(), kMaxFrames);
  char** const symbols = backtrace_symbols(addresses.data(), count);
  if (!symbols) return {};
  std::vector<std::string> frames(symbols, symbols + count);
  std::free(symbols);
  frames.erase(frames.begin(), std::find_if_not(frames.begin(), frames.end(), IsAroundPlugin));
  CleanFrames(frames);
  return frames;
}

std::string DescribeException() {
  const std::type_info* const type = abi::__cxa_current_exception_type();
  if (!type) return "one that isn't of C++, or the end of its thread";
  int status = 0;
  char* const demangled = abi::__cxa_demangle(type->name(), nullptr, nullptr, &status);
  const std::string name = demangled ? demangled : type->name();
  std::free(demangled);
  try {
    throw;
  } catch (const std::exception& exception) {
    return fmt::format("{}: {}", name, EscapeControls(exception.what()));
  } catch (int value) {
    return fmt::format("{} {}", name, value);
  } catch (...) {
    return name;
  }
}

}  // namespace host
