#pragma once

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

// Text files of the session folder: UTF-8, LF lines.

namespace host {

std::string Join(const std::vector<std::string>& parts, std::string_view separator);
void ReplaceAll(std::string& text, std::string_view from, std::string_view to);

/// The lines of a file; none where there is no file.
std::vector<std::string> ReadLines(const std::filesystem::path& file);
/// Writes the file anew, with the folders above it. Throws `std::filesystem::filesystem_error`.
void WriteText(const std::filesystem::path& file, std::string_view text);
void WriteLines(const std::filesystem::path& file, const std::vector<std::string>& lines);
void AppendLine(const std::filesystem::path& file, std::string_view line);
/// Sets the date of the file's contents, in seconds since 1970.
void SetModificationDate(const std::filesystem::path& file, int64_t date);

/// Follows a file that somebody else appends to. Doesn't own the descriptor.
class GrowingFile {
 public:
  void follow(int descriptor) { mDescriptor = descriptor; }
  /// The lines completed since the last call. One system call when there is nothing new.
  std::vector<std::string> newLines();
  /// What stands behind the last line end, which is then given up.
  std::string takeRest();

 private:
  int mDescriptor = -1;
  off_t mOffset = 0;
  std::string mRest;
};

}  // namespace host
