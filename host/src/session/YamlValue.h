#pragma once

#include <yaml-cpp/yaml.h>

#include <cstdint>
#include <filesystem>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace host {

/// A fault of a session file: "FILE:LINE: KEY: what is wrong".
class SessionFileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The values of a variant by name. They replace `${name}`.
using Variables = std::map<std::string, YAML::Node>;

/// A value of a session file, with its place there. Every accessor throws `SessionFileError` for a
/// value of another type. Borrows the file's name and the variables.
class YamlValue {
 public:
  using Field = std::pair<std::string, YamlValue>;

  /// Takes the variable's value, of any type, for a text that is `${name}` and nothing else.
  YamlValue(const YAML::Node& node, std::string key, const std::string* file,
            const Variables* variables);

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
  /// Returns the fields in the order of the file. A key that comes twice is an error.
  std::vector<Field> fields() const;
  /// Returns the fields by key. An unknown key is an error.
  std::map<std::string, YamlValue> fields(const std::vector<std::string_view>& known) const;

  bool isText() const { return !mIsNothing && mNode.IsScalar(); }
  bool isList() const { return mNode.IsSequence(); }
  bool isMap() const { return mNode.IsMap(); }
  bool isNothing() const { return mIsNothing || mNode.IsNull(); }
  /// Returns a value for the same place that holds nothing, under another key.
  YamlValue withNothing(std::string key) const;
  const YAML::Node& node() const { return mNode; }
  const std::string& key() const { return mKey; }
  /// "FILE:LINE"
  std::string place() const;
  [[noreturn]] void fail(std::string_view what) const;

 private:
  YamlValue child(const YAML::Node& node, std::string key) const;
  std::string_view kind() const;

  YAML::Node mNode;
  std::string mKey;
  bool mIsNothing = false;
  const std::string* mFile;
  const Variables* mVariables;
};

/// Returns the text of a session file. Throws `SessionFileError` if it can't be read.
std::string ReadSessionFile(const std::filesystem::path& file);
/// Throws `SessionFileError` if the text isn't YAML.
YAML::Node ParseYaml(const std::string& file, const std::string& yaml);

/// Returns the value of `key`, or null.
const YamlValue* Find(const std::map<std::string, YamlValue>& fields, std::string_view key);

}  // namespace host
