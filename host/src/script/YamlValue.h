#pragma once

#include <yaml-cpp/yaml.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

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

/// Returns the whole number that the text is, decimal or hexadecimal after "0x", or nothing.
std::optional<int64_t> NumberIn(std::string_view text);

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

class YamlValue;
struct KeyReader;

using YamlReader = std::function<void(const YamlValue&)>;

/// A value of a session file, with its place there. Every accessor throws `SessionFileError` for a
/// value of another type. Borrows the file.
class YamlValue {
 public:
  /// Takes the variable's value, of any type, for a text that is `${name}` and nothing else.
  YamlValue(const YAML::Node& node, std::string key, YamlFile& file);

  YamlValue(const YamlValue&) = default;
  // Assigning a node of the YAML library would change the tree that holds it.
  YamlValue& operator=(const YamlValue&) = delete;

  /// Returns a scalar as written, with each `${name}` but `${session}` replaced.
  std::string text() const;
  int64_t integer(int64_t min, int64_t max) const;
  bool boolean() const;
  /// Returns the elements, which have the key of this value. A list among them stands for its own
  /// elements, so that a variable can stand for several, or for none.
  std::vector<YamlValue> list() const;
  std::vector<std::string> texts() const;
  /// Returns a path that stays in the session folder.
  std::string path() const { return checkedPath(text()); }
  /// Returns `text`, which has to be such a path.
  std::string checkedPath(const std::string& text) const;
  /// Calls `read(element)` for each element, and collects the faults.
  template <typename Read>
  void forEachElement(Read read) const {
    for (const YamlValue& element : list()) CollectFaults([&] { read(element); });
  }
  /// Returns the values of a map in the order of the file, each with its key. Collects the fault of
  /// a key that comes twice.
  std::vector<YamlValue> fields() const;
  /// Calls `read(value)` for each of them, and collects the faults.
  template <typename Read>
  void forEachField(Read read) const {
    for (const YamlValue& value : fields()) CollectFaults([&] { read(value); });
  }
  /// Returns the value of a key of the map, or nothing.
  std::optional<YamlValue> find(std::string_view key) const;
  /// Calls the reader of each key that the map has, in the readers' order. Throws at the end if one
  /// of them failed or a key is missing. Collects the faults of unknown keys, which `explain` may
  /// explain by one of its own.
  void readKeys(const std::vector<KeyReader>& readers, const YamlReader& explain = nullptr) const;

  bool isText() const { return mNode.IsScalar(); }
  bool isList() const { return mNode.IsSequence(); }
  bool isMap() const { return mNode.IsMap(); }
  bool isNothing() const { return mNode.IsNull(); }
  /// Returns a value for the same place that holds nothing, under another key.
  YamlValue withNothing(std::string key) const;
  /// Returns a copy for other files, with the variables replaced.
  YAML::Node resolved() const;
  const YAML::Node& node() const { return mNode; }
  const std::string& key() const { return mKey; }
  /// "FILE:LINE"
  std::string place() const { return mFile->place(mLine); }
  /// Fails with "FILE:LINE: KEY: what is wrong".
  [[noreturn]] void fail(std::string_view what) const;
  /// Fails because there is no such key or step. `what` is "key" or "step".
  [[noreturn]] void failForUnknown(std::string_view what,
                                   const std::vector<std::string_view>& known) const;

 private:
  void addElementsTo(std::vector<YamlValue>& elements, int depth) const;
  std::string_view kind() const;

  YAML::Node mNode;
  std::string mKey;
  YamlFile* mFile;
  size_t mLine = 0;
};

/// Reads the value of a key.
struct KeyReader {
  std::string_view key;
  YamlReader read;
  bool required = false;
};

/// Return readers that keep the value.
YamlReader Into(std::string& text);
YamlReader Into(std::vector<std::string>& texts);
YamlReader Into(bool& flag);
YamlReader Into(int64_t& number, int64_t min, int64_t max);

}  // namespace host
