#pragma once

#include <yaml-cpp/yaml.h>

#include <cstddef>
#include <map>
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
/// so that whoever calls this can read on and meet the next one. Returns whether there was none.
template <typename Read>
bool CollectFaults(Read read) {
  try {
    read();
    return true;
  } catch (const SessionFileError&) {
    return false;
  }
}

/// The values of a variant by name. They replace `${name}`.
using Variables = std::map<std::string, YAML::Node>;

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
  /// Throws one `SessionFileError` with all faults that were noted, in the order of their lines, if
  /// there are any.
  void throwFaults() const;

  Variables variables;  ///< of the variant that is being read

 private:
  std::string mName;
  YAML::Node mRoot;
  std::set<std::pair<size_t, std::string>> mFaults;  // by line; variants have many in common
};

}  // namespace host
