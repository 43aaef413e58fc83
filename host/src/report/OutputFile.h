#pragma once

#include <fstream>
#include <string>
#include <string_view>

namespace host {

/// A file that is written bit by bit. Each function throws `std::runtime_error` with the file's
/// name if a write fails.
class OutputFile {
 public:
  /// Creates or replaces the file.
  explicit OutputFile(const std::string& path);
  void write(std::string_view text);
  /// Writes what a buffer holds.
  void flush();

 private:
  void check() const;

  std::string mPath;
  std::ofstream mStream;
};

}  // namespace host
