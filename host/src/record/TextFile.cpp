#include "TextFile.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utf8.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <fstream>
#include <iterator>
#include <system_error>
#include <utility>

namespace host {
namespace {

// Escapes texts so that different ones look different, but for bytes that aren't UTF-8: a line feed
// as "\n", a backslash as two.
std::string Escape(std::string text) {
  ReplaceAll(text, "\\", R"(\\)");
  return EscapeControls(text);
}

std::string Show(const std::vector<std::string>& list) {
  return list.empty() ? "nothing" : Join(list, ", ");
}

std::string DescribeMismatch(const std::string& expected, const std::string& found) {
  return fmt::format("    expected: {}\n    found:    {}", Escape(expected), Escape(found));
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
  // As nearly all of them are, for each text that the plug-in passes.
  const auto isPlain = [](char letter) { return letter >= 0x20 && letter < 0x7f; };
  if (std::all_of(text.begin(), text.end(), isPlain)) return std::string(text);
  std::string escaped;
  const std::string valid = utf8::replace_invalid(text);
  for (auto place = valid.begin(); place != valid.end();) {
    const char32_t letter = utf8::unchecked::next(place);
    if (letter == '\n') {
      escaped += "\\n";
    } else if (letter == '\t') {
      escaped += "\\t";
    } else if (letter < 0x20 || (letter >= 0x7f && letter < 0xa0)) {
      escaped += fmt::format("\\x{:02x}", static_cast<uint32_t>(letter));
    } else {
      utf8::append(letter, std::back_inserter(escaped));
    }
  }
  return escaped;
}

std::string EscapeLines(std::string_view text) {
  std::vector<std::string> lines = Split(text, "\n");
  std::transform(lines.begin(), lines.end(), lines.begin(), EscapeControls);
  return Join(lines, "\n");
}

std::string CompareLists(const std::vector<std::string>& expected,
                         const std::vector<std::string>& found) {
  constexpr size_t kShort = 8;
  if (expected == found) return "";
  const size_t count = std::max(expected.size(), found.size());
  if (count <= kShort) return DescribeMismatch(Show(expected), Show(found));
  std::string lines =
      fmt::format("    (- expected, + found; {} and {} elements)", expected.size(), found.size());
  for (size_t i = 0; i < count; ++i) {
    const bool isExpected = i < expected.size();
    const bool isFound = i < found.size();
    if (isExpected && isFound && expected[i] == found[i]) continue;
    if (isExpected) lines += fmt::format("\n    - {} {}", i + 1, Escape(expected[i]));
    if (isFound) lines += fmt::format("\n    + {} {}", i + 1, Escape(found[i]));
  }
  return lines;
}

bool WriteAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<size_t>(written));
  }
  return true;
}

std::vector<std::string> ReadLines(const std::filesystem::path& file) {
  std::vector<std::string> lines;
  std::ifstream stream(file, std::ios::binary);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

void WriteText(const std::filesystem::path& file, std::string_view text) {
  if (file.has_parent_path()) std::filesystem::create_directories(file.parent_path());
  // Not emptied first: some file systems have a file that was emptied on the disk at once.
  const int descriptor = open(file.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
  const auto size = static_cast<off_t>(text.size());
  const bool isWritten = descriptor >= 0 && WriteAll(descriptor, text) &&
                         (ftruncate(descriptor, size) == 0 || errno == EINVAL);
  const std::error_code error(errno, std::generic_category());
  if (descriptor >= 0) close(descriptor);
  if (!isWritten) throw std::filesystem::filesystem_error("can't write", file, error);
}

void WriteLines(const std::filesystem::path& file, const std::vector<std::string>& lines) {
  WriteText(file, lines.empty() ? "" : Join(lines, "\n") + "\n");
}

void SetModificationDate(const std::filesystem::path& file, int64_t date) {
  const std::array<timespec, 2> times{timespec{date, 0}, timespec{date, 0}};
  utimensat(AT_FDCWD, file.c_str(), times.data(), AT_SYMLINK_NOFOLLOW);
}

std::vector<std::string> GrowingFile::newLines() {
  // A thread may print without end.
  constexpr off_t kMaxAtOnce = 16'777'216;
  const off_t before = mOffset;
  std::array<char, 4096> buffer;
  for (ssize_t size = 0; mOffset - before < kMaxAtOnce &&
                         (size = pread(mDescriptor, buffer.data(), buffer.size(), mOffset)) > 0;) {
    mOffset += size;
    mRest.append(buffer.data(), static_cast<size_t>(size));
  }
  if (mOffset == before) return {};
  std::vector<std::string> lines = Split(mRest, "\n");
  mRest = std::move(lines.back());
  lines.pop_back();
  return lines;
}

}  // namespace host
