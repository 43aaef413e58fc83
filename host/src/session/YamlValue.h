#pragma once

#include <yaml-cpp/yaml.h>

#include <cstdint>
#include <initializer_list>
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

/// The values of a variant, which take the place of `${name}`.
using Variables = std::map<std::string, YAML::Node>;

/// A value of a session file that knows where it stands. Every accessor throws `SessionFileError`
/// for a value of another type. The file's name and the variables are borrowed.
class YamlValue {
 public:
  using Field = std::pair<std::string, YamlValue>;

  /// A text that is `${name}` as a whole stands for the variable's value, whatever its type.
  YamlValue(const YAML::Node& node, std::string key, const std::string* file,
            const Variables* variables);

  YamlValue(const YamlValue&) = default;
  // Assigning a node of the YAML library changes the tree that both stand in.
  YamlValue& operator=(const YamlValue&) = delete;

  /// Any scalar, as it is written, with each `${name}` in it replaced. `${session}` stays.
  std::string text() const;
  int64_t integer(int64_t least, int64_t most) const;
  bool boolean() const;
  /// The elements; they go under this value's key.
  std::vector<YamlValue> list() const;
  std::vector<std::string> texts() const;
  /// The fields in the order of the file. No key comes twice.
  std::vector<Field> fields() const;
  /// The fields by key. Others than the known ones are an error.
  std::map<std::string, YamlValue> fields(std::initializer_list<std::string_view> known) const;

  bool isText() const { return !mIsNothing && mNode.IsScalar(); }
  bool isList() const { return mNode.IsSequence(); }
  bool isMap() const { return mNode.IsMap(); }
  bool isNothing() const { return mIsNothing || mNode.IsNull(); }
  /// The same place in the file with no value, under another key.
  YamlValue withNothing(std::string key) const;
  const YAML::Node& node() const { return mNode; }
  const std::string& key() const { return mKey; }
  /// "FILE:LINE"
  std::string place() const;
  [[noreturn]] void fail(std::string_view what) const;

 private:
  YamlValue child(const YAML::Node& node, std::string key) const;

  YAML::Node mNode;
  std::string mKey;
  bool mIsNothing = false;
  const std::string* mFile;
  const Variables* mVariables;
};

/// The value of `key` in `fields`, if it is there.
const YamlValue* Find(const std::map<std::string, YamlValue>& fields, std::string_view key);

}  // namespace host
