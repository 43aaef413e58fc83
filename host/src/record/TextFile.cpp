#include "TextFile.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <fstream>
#include <system_error>
#include <utility>

namespace host {
namespace {

constexpr int64_t kMaxBytesAtOnce = int64_t{16} * 1024 * 1024;

[[noreturn]] void ThrowFileError(const char* what, const std::filesystem::path& file) {
  throw std::filesystem::filesystem_error(what, file,
                                          std::error_code(errno, std::generic_category()));
}

void Write(const std::filesystem::path& file, std::ios::openmode mode, std::string_view text) {
  std::ofstream stream(file, mode | std::ios::binary);
  stream << text << std::flush;
  if (!stream) ThrowFileError("can't write", file);
}

}  // namespace

std::string Join(const std::vector<std::string>& parts, std::string_view separator) {
  return fmt::format("{}", fmt::join(parts, separator));
}

void ReplaceAll(std::string& text, std::string_view from, std::string_view to) {
  for (size_t at = text.find(from); at != std::string::npos; at = text.find(from, at)) {
    text.replace(at, from.size(), to);
    at += to.size();
  }
}

std::vector<std::string> Split(std::string_view text, std::string_view separator) {
  std::vector<std::string> parts;
  size_t begin = 0;
  for (size_t end = 0; (end = text.find(separator, begin)) != std::string_view::npos;
       begin = end + separator.size()) {
    parts.emplace_back(text.substr(begin, end - begin));
  }
  parts.emplace_back(text.substr(begin));
  return parts;
}

std::string EscapeControls(std::string_view text) {
  std::string escaped;
  unsigned char before = 0;
  for (const char letter : text) {
    const auto code = static_cast<unsigned char>(letter);
    // U+0080 to U+009F, the first byte of which stands already.
    const bool endsControl = std::exchange(before, code) == 0xc2 && code >= 0x80 && code < 0xa0;
    if (endsControl) escaped.replace(escaped.size() - 1, 1, "\\xc2");
    if (code >= 0x20 && code != 0x7f && !endsControl) {
      escaped += letter;
    } else if (letter == '\n') {
      escaped += "\\n";
    } else if (letter == '\t') {
      escaped += "\\t";
    } else {
      escaped += fmt::format("\\x{:02x}", code);
    }
  }
  return escaped;
}

std::string EscapeLines(std::string_view text) {
  std::vector<std::string> lines = Split(text, "\n");
  std::transform(lines.begin(), lines.end(), lines.begin(), EscapeControls);
  return Join(lines, "\n");
}

std::vector<std::string> ReadLines(const std::filesystem::path& file) {
  std::vector<std::string> lines;
  std::ifstream stream(file, std::ios::binary);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

void WriteText(const std::filesystem::path& file, std::string_view text) {
  if (file.has_parent_path()) std::filesystem::create_directories(file.parent_path());
  Write(file, std::ios::trunc, text);
}

void WriteLines(const std::filesystem::path& file, const std::vector<std::string>& lines) {
  WriteText(file, lines.empty() ? "" : Join(lines, "\n") + "\n");
}

void AppendLine(const std::filesystem::path& file, std::string_view line) {
  Write(file, std::ios::app, std::string(line) + "\n");
}

void SetModificationDate(const std::filesystem::path& file, int64_t date) {
  if (!TrySetModificationDate(file, date)) ThrowFileError("can't set the date of", file);
}

bool TrySetModificationDate(const std::filesystem::path& file, int64_t date) {
  const std::array<timespec, 2> times{timespec{date, 0}, timespec{date, 0}};
  return utimensat(AT_FDCWD, file.c_str(), times.data(), AT_SYMLINK_NOFOLLOW) == 0;
}

std::vector<std::string> GrowingFile::newLines() {
  std::array<char, 4096> buffer;
  // Not more than what is there now: somebody may write faster than this reads.
  int64_t left = kMaxBytesAtOnce;
  for (ssize_t size = 0;
       left > 0 && (size = pread(mDescriptor, buffer.data(), buffer.size(), mOffset)) > 0;) {
    left -= size;
    mOffset += size;
    mRest.append(buffer.data(), static_cast<size_t>(size));
  }
  if (left == kMaxBytesAtOnce) return {};
  std::vector<std::string> lines = Split(mRest, "\n");
  mRest = std::move(lines.back());
  lines.pop_back();
  return lines;
}

std::vector<std::string> GrowingFile::takeRest() {
  if (mRest.empty()) return {};
  return {std::exchange(mRest, {})};
}

}  // namespace host
