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
namespace {

// Returns the name if the text is `${name}` and nothing else.
std::optional<std::string> WholeVariable(const std::string& text) {
  if (text.size() < 4 || !text.starts_with("${") || text.find('}') != text.size() - 1) return {};
  return text.substr(2, text.size() - 3);
}

}  // namespace

YamlValue::YamlValue(const YAML::Node& node, std::string key, YamlFile* file,
                     const Variables* variables)
    : mNode(node), mKey(std::move(key)), mFile(file), mVariables(variables) {
  if (!mNode.IsScalar()) return;
  const std::optional<std::string> name = WholeVariable(mNode.Scalar());
  if (!name) return;
  if (const auto variable = mVariables->find(*name); variable != mVariables->end()) {
    mNode.reset(variable->second);
  }
}

YamlValue YamlValue::child(const YAML::Node& node, std::string key) const {
  return {node, std::move(key), mFile, mVariables};
}

YamlValue YamlValue::withNothing(std::string key) const {
  YamlValue value(*this);
  value.mKey = std::move(key);
  value.mIsNothing = true;
  return value;
}

// An empty file has no mark.
size_t YamlValue::line() const {
  return static_cast<size_t>(std::max(mNode.Mark().line, 0));
}

void YamlValue::fail(std::string_view what) const {
  mFile->fail(line(), fmt::format("{}: {}", mKey, what));
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
    const auto variable = mVariables->find(name);
    if (variable == mVariables->end()) fail(fmt::format("there is no variable '{}'", name));
    if (!variable->second.IsScalar()) fail(fmt::format("'{}' is no text", name));
    text.replace(begin, end + 1 - begin, variable->second.Scalar());
    begin += variable->second.Scalar().size();
  }
  return text;
}

int64_t YamlValue::integer(int64_t least, int64_t most) const {
  const std::string digits = text();
  const bool isHex = digits.starts_with("0x");
  const char* const begin = digits.data() + (isHex ? 2 : 0);
  const char* const end = digits.data() + digits.size();
  int64_t value = 0;
  const auto [stop, error] = std::from_chars(begin, end, value, isHex ? 16 : 10);
  if (error != std::errc() || stop != end || value < least || value > most) {
    fail(fmt::format("has to be a whole number from {} to {}, not '{}'", least, most, digits));
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
  for (const YAML::Node& element : mNode) elements.push_back(child(element, mKey));
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

std::vector<YamlValue::Field> YamlValue::fields() const {
  if (!mNode.IsMap()) fail(fmt::format("has to be a map, not {}", kind()));
  std::vector<Field> fields;
  std::set<std::string> keys;
  for (const auto& entry : mNode) {
    CollectFaults([&] {
      const std::string key = child(entry.first, mKey).text();
      if (!keys.insert(key).second) child(entry.first, key).fail("comes twice");
      fields.emplace_back(key, child(entry.second, key));
    });
  }
  return fields;
}

std::map<std::string, YamlValue> YamlValue::fields(
    const std::vector<std::string_view>& known) const {
  std::map<std::string, YamlValue> byKey;
  forEachField([&](const std::string& key, const YamlValue& value) {
    const bool isKnown = std::find(known.begin(), known.end(), key) != known.end();
    if (!isKnown) value.failForUnknown("key", known);
    byKey.emplace(key, value);
  });
  return byKey;
}

const YamlValue* Find(const std::map<std::string, YamlValue>& fields, std::string_view key) {
  const auto found = fields.find(std::string(key));
  return found == fields.end() ? nullptr : &found->second;
}

}  // namespace host
