#pragma once

#include <yaml-cpp/yaml.h>

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "YamlFile.h"

namespace host {

/// The values of a variant by name. They replace `${name}`.
using Variables = std::map<std::string, YAML::Node>;

/// A value of a session file, with its place there. Every accessor throws `SessionFileError` for a
/// value of another type. Borrows the file and the variables.
class YamlValue {
 public:
  using Field = std::pair<std::string, YamlValue>;

  /// Takes the variable's value, of any type, for a text that is `${name}` and nothing else.
  YamlValue(const YAML::Node& node, std::string key, YamlFile* file, const Variables* variables);

  YamlValue(const YamlValue&) = default;
  // Assigning a node of the YAML library would change the tree that holds it.
  YamlValue& operator=(const YamlValue&) = delete;

  /// Returns a scalar as written, with each `${name}` but `${session}` replaced.
  std::string text() const;
  int64_t integer(int64_t least, int64_t most) const;
  bool boolean() const;
  /// Returns the elements. They have the key of this value.
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
  /// Returns the fields in the order of the file. Collects the fault of a key that comes twice.
  std::vector<Field> fields() const;
  /// Returns the fields by key. Collects the faults of unknown keys.
  std::map<std::string, YamlValue> fields(const std::vector<std::string_view>& known) const;
  /// Calls `read(key, value)` for each field, and collects the faults.
  template <typename Read>
  void forEachField(Read read) const {
    for (const Field& field : fields()) CollectFaults([&] { read(field.first, field.second); });
  }

  bool isText() const { return !mIsNothing && mNode.IsScalar(); }
  bool isList() const { return mNode.IsSequence(); }
  bool isMap() const { return mNode.IsMap(); }
  bool isNothing() const { return mIsNothing || mNode.IsNull(); }
  /// Returns a value for the same place that holds nothing, under another key.
  YamlValue withNothing(std::string key) const;
  const YAML::Node& node() const { return mNode; }
  const std::string& key() const { return mKey; }
  /// "FILE:LINE"
  std::string place() const { return mFile->place(line()); }
  /// Fails with "FILE:LINE: KEY: what is wrong".
  [[noreturn]] void fail(std::string_view what) const;
  /// Fails because there is no such key or step. `what` is "key" or "step".
  [[noreturn]] void failForUnknown(std::string_view what,
                                   const std::vector<std::string_view>& known) const;

 private:
  YamlValue child(const YAML::Node& node, std::string key) const;
  std::string_view kind() const;
  size_t line() const;

  YAML::Node mNode;
  std::string mKey;
  bool mIsNothing = false;
  YamlFile* mFile;
  const Variables* mVariables;
};

/// Returns the value of `key`, or null.
const YamlValue* Find(const std::map<std::string, YamlValue>& fields, std::string_view key);

/// Calls `read(value)` for the value of `key`, if there is one, and collects its fault.
template <typename Read>
void ReadField(const std::map<std::string, YamlValue>& fields, std::string_view key, Read read) {
  if (const YamlValue* value = Find(fields, key)) CollectFaults([&] { read(*value); });
}

}  // namespace host
