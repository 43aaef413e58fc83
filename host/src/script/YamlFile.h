#pragma once

#include <yaml-cpp/yaml.h>

#include <cstddef>
#include <filesystem>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace host {

/// What is wrong with a session file, a line for each fault: "FILE:LINE: KEY: what is wrong".
class SessionFileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Calls `read`, which ends with the first fault that it meets. The fault is noted with its file,
/// so that whoever calls this can read on and meet the next one.
template <typename Read>
void CollectFaults(Read read) {
  try {
    read();
  } catch (const SessionFileError&) {
  }
}

/// A YAML file with the faults found in it.
class YamlFile {
 public:
  /// Parses the text of the file. Throws `SessionFileError` if it isn't one YAML document.
  YamlFile(std::string name, const std::string& text);

  const YAML::Node& root() const { return mRoot; }
  /// "FILE:LINE" of a line, counted from 0.
  std::string place(size_t line) const;
  /// Notes the fault and throws it.
  [[noreturn]] void fail(size_t line, std::string_view what);
  /// Calls `read`. Throws one `SessionFileError` with all faults that were noted meanwhile, in the
  /// order of their lines.
  template <typename Read>
  void readWith(Read read) {
    CollectFaults(read);
    throwFaults();
  }

 private:
  void throwFaults() const;

  std::string mName;
  YAML::Node mRoot;
  std::set<std::pair<size_t, std::string>> mFaults;  // by line; variants have many in common
};

/// Returns the text of a session file. Throws `SessionFileError` if it can't be read.
std::string ReadSessionFile(const std::filesystem::path& file);

}  // namespace host
