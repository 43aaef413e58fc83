#include "OutputFile.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>

namespace host {

OutputFile::OutputFile(const std::string& path) : mPath(path), mStream(path, std::ios::binary) {
  check();
}

void OutputFile::write(std::string_view text) {
  mStream << text;
  check();
}

void OutputFile::flush() {
  mStream.flush();
  check();
}

void OutputFile::check() const {
  if (mStream) return;
  throw std::runtime_error(fmt::format("can't write {}: {}", mPath, std::strerror(errno)));
}

}  // namespace host
