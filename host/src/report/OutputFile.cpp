#include "OutputFile.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>

namespace host {
namespace {

// Returns null if that fails.
std::FILE* TakeStandardOutput() {
  const int file = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0);
  if (file < 0 || std::fflush(stdout) != 0 || dup2(STDERR_FILENO, STDOUT_FILENO) < 0)
    return nullptr;
  return fdopen(file, "wb");
}

}  // namespace

OutputFile::OutputFile(const std::string& path)
    : mName(path == kStandardOutput ? "standard output" : path),
      mFile(path == kStandardOutput ? TakeStandardOutput() : std::fopen(path.c_str(), "wbe")) {
  if (!mFile) fail();
}

void OutputFile::write(std::string_view text) {
  const size_t written = std::fwrite(text.data(), 1, text.size(), mFile.get());
  if (written != text.size() || std::fflush(mFile.get()) != 0) fail();
}

void OutputFile::fail() const {
  throw std::runtime_error(fmt::format("can't write {}: {}", mName, std::strerror(errno)));
}

}  // namespace host
