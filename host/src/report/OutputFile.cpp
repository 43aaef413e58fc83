#include "OutputFile.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <utility>

namespace host {

OutputFile::OutputFile(std::string path)
    : mPath(std::move(path)), mFile(std::fopen(mPath.c_str(), "wbe")) {
  if (!mFile) fail();
}

void OutputFile::write(std::string_view text) {
  if (std::fwrite(text.data(), 1, text.size(), mFile.get()) != text.size()) fail();
}

void OutputFile::flush() {
  if (std::fflush(mFile.get()) != 0) fail();
}

void OutputFile::fail() const {
  throw std::runtime_error(fmt::format("can't write {}: {}", mPath, std::strerror(errno)));
}

}  // namespace host
