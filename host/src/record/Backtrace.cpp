#include "Backtrace.h"

#include <execinfo.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>

namespace host {
namespace {

bool IsAroundPlugin(const std::string& frame) {
  // As a backtrace names the program.
  static const std::string program = program_invocation_name;
  return frame.empty() || frame.starts_with(program + "(") ||
         frame.find("/libc.so") != std::string::npos;
}

}  // namespace

std::vector<std::string> Backtrace() {
  std::array<void*, 64> addresses;
  const int count = backtrace(addresses.data(), static_cast<int>(addresses.size()));
  char** const symbols = backtrace_symbols(addresses.data(), count);
  if (!symbols) return {};
  std::vector<std::string> frames(symbols, symbols + count);
  std::free(symbols);
  frames.erase(frames.begin(), std::find_if_not(frames.begin(), frames.end(), IsAroundPlugin));
  CleanFrames(frames);
  return frames;
}

void CleanFrames(std::vector<std::string>& frames) {
  while (!frames.empty() && IsAroundPlugin(frames.back())) frames.pop_back();
  for (std::string& frame : frames) {
    const size_t address = frame.rfind(")[0x");
    const size_t spaced = frame.rfind(") [0x");
    if (address != std::string::npos) frame.erase(address + 1);
    if (spaced != std::string::npos) frame.erase(spaced + 1);
  }
}

}  // namespace host
