#pragma once

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

// Texts, and text files of the session folder: UTF-8, LF lines.

namespace host {

/// Returns the parts with the separator between two of them.
std::string Join(const std::vector<std::string>& parts, std::string_view separator);
/// Replaces each `from` in the text, from left to right. `from` isn't empty.
void ReplaceAll(std::string& text, std::string_view from, std::string_view to);
/// Returns the texts around the separators: one more than there are separators.
std::vector<std::string> Split(std::string_view text, std::string_view separator);
/// Writes control characters as escapes: a line feed as "\n", an escape as "\x1b". Those beyond
/// ASCII, which a terminal also acts on, too. Bytes that aren't UTF-8 become U+FFFD.
std::string EscapeControls(std::string_view text);
/// Does the same, but keeps line feeds.
std::string EscapeLines(std::string_view text);
/// Returns how two lists differ, in lines, or an empty text. Shows short lists whole, and of long
/// ones only the elements that differ.
std::string CompareLists(const std::vector<std::string>& expected,
                         const std::vector<std::string>& found);

/// Returns whether all bytes were written. If not, `errno` says why.
bool WriteAll(int descriptor, std::string_view bytes);
/// Reads the lines of a file. A missing file has none.
std::vector<std::string> ReadLines(const std::filesystem::path& file);
/// Creates or replaces the file, and creates its folders. Throws
/// `std::filesystem::filesystem_error`.
void WriteText(const std::filesystem::path& file, std::string_view text);
/// Does the same, with a line feed after each line.
void WriteLines(const std::filesystem::path& file, const std::vector<std::string>& lines);
/// Sets the date of the file's contents, in seconds since 1970. Does nothing if there is no such
/// file.
void SetModificationDate(const std::filesystem::path& file, int64_t date);

/// Follows a file that somebody appends to. Doesn't own the descriptor.
class GrowingFile {
 public:
  void follow(int descriptor) { mDescriptor = descriptor; }
  /// Returns the lines completed since the last call, of at most 16 MB. Makes one system call if
  /// there is nothing new.
  std::vector<std::string> newLines();
  /// How many bytes of the file were returned.
  off_t taken() const { return mOffset - static_cast<off_t>(mRest.size()); }

 private:
  int mDescriptor = -1;
  off_t mOffset = 0;
  std::string mRest;
};

}  // namespace host
