#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

namespace host {

/// A file that is written bit by bit, each at once. Programs that a plug-in starts don't get it.
/// What fails throws `std::runtime_error` with the file's name.
class OutputFile {
 public:
  /// The path that stands for standard output.
  static constexpr std::string_view kStandardOutput = "-";

  /// Creates or replaces the file. A file that is standard output has it to itself: what the
  /// process prints from then on goes to standard error.
  explicit OutputFile(const std::string& path);
  void write(std::string_view text);

 private:
  struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };

  [[noreturn]] void fail() const;

  std::string mName;
  std::unique_ptr<std::FILE, Close> mFile;
};

}  // namespace host
