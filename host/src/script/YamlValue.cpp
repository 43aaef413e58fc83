#include "YamlValue.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <optional>
#include <set>

#include "TextFile.h"

namespace host {

YamlValue::YamlValue(const YAML::Node& node, std::string key, YamlFile& file)
    : mNode(node), mKey(std::move(key)), mFile(&file) {
  for (const auto& [name, value] : file.variables) {
    if (mNode.Scalar() != fmt::format("${{{}}}", name)) continue;
    mNode.reset(value);
    break;
  }
  // An empty file has no mark.
  mLine = static_cast<size_t>(std::max(mNode.Mark().line, 0));
}

YamlValue YamlValue::withNothing(std::string key) const {
  YamlValue value(*this);
  value.mKey = std::move(key);
  value.mNode.reset();
  return value;
}

void YamlValue::fail(std::string_view what) const {
  mFile->fail(mLine, fmt::format("{}: {}", mKey, what));
}

void YamlValue::failForUnknown(std::string_view what,
                               const std::vector<std::string_view>& known) const {
  fail(fmt::format("unknown {}; known are {}", what,
                   Join(std::vector<std::string>(known.begin(), known.end()), ", ")));
}

std::string_view YamlValue::kind() const {
  return isNothing() ? "nothing" : isText() ? "a text" : isList() ? "a list" : "a map";
}

std::string YamlValue::text() const {
  if (isMap()) fail("has to be a text, not a map: write a text that holds a ':' in quotes");
  if (!isText()) fail(fmt::format("has to be a text, not {}", kind()));
  std::string text = mNode.Scalar();
  for (size_t begin = 0; (begin = text.find("${", begin)) != std::string::npos;) {
    const size_t end = text.find('}', begin);
    if (end == std::string::npos) fail("a '${' has no '}'");
    const std::string name = text.substr(begin + 2, end - begin - 2);
    if (name == "session") {
      begin = end;
      continue;
    }
    const auto variable = mFile->variables.find(name);
    if (variable == mFile->variables.end()) fail(fmt::format("there is no variable '{}'", name));
    if (!variable->second.IsScalar()) fail(fmt::format("'{}' is no text", name));
    text.replace(begin, end + 1 - begin, variable->second.Scalar());
    begin += variable->second.Scalar().size();
  }
  return text;
}

int64_t YamlValue::integer(int64_t min, int64_t max) const {
  const std::string digits = text();
  const bool isHex = digits.starts_with("0x");
  const char* const begin = digits.data() + (isHex ? 2 : 0);
  const char* const end = digits.data() + digits.size();
  int64_t value = 0;
  const auto [stop, error] = std::from_chars(begin, end, value, isHex ? 16 : 10);
  if (error != std::errc() || stop != end || value < min || value > max) {
    fail(fmt::format("has to be a whole number from {} to {}, not '{}'", min, max, digits));
  }
  return value;
}

bool YamlValue::boolean() const {
  const std::string word = text();
  if (word != "true" && word != "false") {
    fail(fmt::format("has to be true or false, not '{}'", word));
  }
  return word == "true";
}

std::vector<YamlValue> YamlValue::list() const {
  if (!mNode.IsSequence()) fail(fmt::format("has to be a list, not {}", kind()));
  std::vector<YamlValue> elements;
  for (const YAML::Node& element : mNode) elements.emplace_back(element, mKey, *mFile);
  return elements;
}

std::vector<std::string> YamlValue::texts() const {
  std::vector<std::string> texts;
  forEachElement([&](const YamlValue& element) { texts.push_back(element.text()); });
  return texts;
}

std::string YamlValue::checkedPath(const std::string& text) const {
  const std::filesystem::path path(text);
  const bool leaves = std::find(path.begin(), path.end(), "..") != path.end();
  if (path.empty() || path.is_absolute() || leaves) fail("has to stay in the session folder");
  static constexpr std::array<std::string_view, 8> kReserved{
      "active-fonts", "framework-answers", "framework-state", "journal",
      "vault",        ".stdout",           ".stderr",         "Tamberlink.framework"};
  if (std::find(kReserved.begin(), kReserved.end(), path.begin()->string()) != kReserved.end()) {
    fail(fmt::format("'{}' is a name of the session folder's own", text));
  }
  if (!path.has_filename() || path == ".") fail("has to name a file");
  return text;
}

std::vector<YamlValue> YamlValue::fields() const {
  if (!mNode.IsMap()) fail(fmt::format("has to be a map, not {}", kind()));
  std::vector<YamlValue> fields;
  std::set<std::string> keys;
  for (const auto& entry : mNode) {
    CollectFaults([&] {
      const std::string key = YamlValue(entry.first, mKey, *mFile).text();
      if (!keys.insert(key).second) YamlValue(entry.first, key, *mFile).fail("comes twice");
      fields.emplace_back(entry.second, key, *mFile);
    });
  }
  return fields;
}

std::optional<YamlValue> YamlValue::find(std::string_view key) const {
  for (const YamlValue& value : fields()) {
    if (value.key() == key) return value;
  }
  return {};
}

void YamlValue::readKeys(const std::vector<KeyReader>& readers, const YamlReader& explain) const {
  std::vector<std::string_view> known;
  for (const KeyReader& reader : readers) known.push_back(reader.key);
  forEachField([&](const YamlValue& value) {
    if (std::find(known.begin(), known.end(), value.key()) != known.end()) return;
    if (explain) explain(value);
    value.failForUnknown("key", known);
  });
  bool isRight = true;
  for (const KeyReader& reader : readers) {
    isRight = CollectFaults([&] { readKey(reader); }) && isRight;
  }
  if (!isRight) mFile->throwFaults();
}

void YamlValue::readKey(const KeyReader& reader) const {
  if (const std::optional<YamlValue> value = find(reader.key)) {
    reader.read(*value);
  } else if (reader.required) {
    fail(fmt::format("the key '{}' is missing", reader.key));
  }
}

YAML::Node YamlValue::resolved() const {
  if (isText()) return YAML::Node(text());
  YAML::Node copy(mNode.Type());
  copy.SetStyle(mNode.Style());
  if (isList()) {
    for (const YamlValue& element : list()) copy.push_back(element.resolved());
  } else if (isMap()) {
    for (const YamlValue& value : fields()) copy[value.key()] = value.resolved();
  }
  return copy;
}

YamlReader Into(std::string& text) {
  return [&text](const YamlValue& value) { text = value.text(); };
}

YamlReader Into(std::vector<std::string>& texts) {
  return [&texts](const YamlValue& value) { texts = value.texts(); };
}

YamlReader Into(bool& flag) {
  return [&flag](const YamlValue& value) { flag = value.boolean(); };
}

YamlReader Into(int64_t& number, int64_t min, int64_t max) {
  return [&number, min, max](const YamlValue& value) { number = value.integer(min, max); };
}

}  // namespace host
