#include "Backtrace.h"

#include <cxxabi.h>
#include <execinfo.h>
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <exception>
#include <typeinfo>

#include "TextFile.h"

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

std::string DescribeException() {
  const std::type_info* const type = abi::__cxa_current_exception_type();
  if (!type) return "one that isn't of C++";
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
