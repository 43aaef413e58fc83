#include "YamlValue.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <iterator>

#include "TextFile.h"

namespace host {
namespace {

using Lines = std::vector<std::string>;

// The parser takes the end of the text for the end of a quote, but not the end of a document.
std::string WithEnd(const std::string& text) {
  return text + (text.ends_with('\n') ? "...\n" : "\n...\n");
}

// Returns the line in which begins what is still open at the end of the first `count` lines, or
// `count` if nothing is. `error` is what the parser says of something open.
size_t FirstLineOfOpen(Lines lines, size_t count, std::string_view error) {
  for (; count > 0; --count) {
    lines.resize(count);
    try {
      YAML::LoadAll(WithEnd(Join(lines, "\n")));
      return count;
    } catch (const YAML::ParserException& fault) {
      if (fault.msg != error) return count;
    }
  }
  return 0;
}

// Says what is wrong with a line where the parser stops.
std::string ExplainWithin(const std::string& line, size_t column, const std::string& error) {
  const std::string before = line.substr(0, column);
  const size_t last = before.find_last_not_of(' ');
  const char next = column < line.size() ? line[column] : '\0';
  if (next == ':' && line.find(':') == column) {
    return "a key can't be here: indent it like the other keys of its map, and end the line above "
           "with a ':' if it belongs below that";
  }
  if (next == ':') {
    return "a second ':' in a line: write a text that holds one in quotes, as \"a: b\", and a map "
           "in braces, as {a: b}";
  }
  if (last == std::string::npos) {
    return "the line belongs to none above it: indent a key like the other keys of its map, and a "
           "'-' like the others of its list";
  }
  if (before[last] == '"' || before[last] == '\'') {
    return "a text goes on after its quote: write a quote within quotes as '' or \\\"";
  }
  if (error == YAML::ErrorMsg::UNKNOWN_TOKEN || error == YAML::ErrorMsg::UNKNOWN_ANCHOR) {
    return fmt::format("write a text that begins with '{}' in quotes", next);
  }
  return "isn't YAML: " + error;
}

// Returns the line, counted from 0, at which a person looks for what the parser stops at, and what
// is wrong with it.
std::pair<size_t, std::string> Explain(const Lines& lines, const YAML::ParserException& error) {
  const size_t end = static_cast<size_t>(error.mark.line);
  const size_t column = static_cast<size_t>(error.mark.column);
  const std::string line = end < lines.size() ? lines[end] : "";
  if (line.substr(0, line.find_first_not_of(" \t")).find('\t') != std::string::npos) {
    return {end, "a tab indents the line: indent it with spaces"};
  }
  const size_t quote = FirstLineOfOpen(lines, end, YAML::ErrorMsg::DOC_IN_SCALAR);
  if (quote < end) return {quote, "a quote has no end in its line: close it"};
  for (const char* const open :
       {YAML::ErrorMsg::END_OF_SEQ_FLOW, YAML::ErrorMsg::END_OF_MAP_FLOW}) {
    // The parser met the end of the text, or a key of the lines below.
    if (!line.empty() && line.find(':') != column) break;
    const size_t bracket = FirstLineOfOpen(lines, end, open);
    if (bracket < end) return {bracket, "a '[' or '{' has no end, or lacks a ',': close it"};
  }
  return {end, ExplainWithin(line, column, error.msg)};
}

}  // namespace

std::optional<int64_t> NumberIn(std::string_view text) {
  const bool isHex = text.starts_with("0x");
  if (isHex) text.remove_prefix(2);
  int64_t value = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value, isHex ? 16 : 10);
  if (error != std::errc() || stop != end) return {};
  return value;
}

YamlFile::YamlFile(std::string name, const std::string& text) : mName(std::move(name)) {
  const Lines lines = Split(text, "\n");
  try {
    const std::vector<YAML::Node> documents = YAML::LoadAll(WithEnd(text));
    if (!documents.empty()) mRoot = documents.front();
    if (documents.size() < 2) return;
    size_t line = std::min(static_cast<size_t>(documents[1].Mark().line), lines.size() - 1);
    while (line > 0 && !lines[line].starts_with("---") && !lines[line].starts_with("...")) --line;
    fail(line, "a second document begins: write it to a file of its own, or as a variant");
  } catch (const YAML::ParserException& error) {
    const auto [line, what] = Explain(lines, error);
    fail(line, what);
  }
}

std::string YamlFile::place(size_t line) const {
  return fmt::format("{}:{}", mName, line + 1);
}

void YamlFile::fail(size_t line, std::string_view what) {
  const std::string fault = fmt::format("{}: {}", place(line), what);
  mFaults.emplace(line, fault);
  throw SessionFileError(fault);
}

void YamlFile::throwFaults() const {
  if (mFaults.empty()) return;
  std::vector<std::string> faults;
  for (const auto& [line, fault] : mFaults) faults.push_back(fault);
  throw SessionFileError(Join(faults, "\n"));
}

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
  fail(fmt::format("unknown {}; known are {}", what, fmt::join(known, ", ")));
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
  const std::optional<int64_t> value = NumberIn(digits);
  if (!value || *value < min || *value > max) {
    fail(fmt::format("has to be a whole number from {} to {}, not '{}'", min, max, digits));
  }
  return *value;
}

bool YamlValue::boolean() const {
  const std::string word = text();
  if (word != "true" && word != "false") {
    fail(fmt::format("has to be true or false, not '{}'", word));
  }
  return word == "true";
}

std::vector<YamlValue> YamlValue::list() const {
  if (!isList()) fail(fmt::format("has to be a list, not {}", kind()));
  std::vector<YamlValue> elements;
  addElementsTo(elements, 0);
  return elements;
}

void YamlValue::addElementsTo(std::vector<YamlValue>& elements, int depth) const {
  constexpr int kMaxDepth = 100;
  if (depth == kMaxDepth) fail("a variable stands for a list that holds itself");
  for (const YAML::Node& node : mNode) {
    const YamlValue element(node, mKey, *mFile);
    if (element.isList()) {
      element.addElementsTo(elements, depth + 1);
    } else {
      elements.push_back(element);
    }
  }
}

std::vector<std::string> YamlValue::texts() const {
  std::vector<std::string> texts;
  forEachElement([&](const YamlValue& element) { texts.push_back(element.text()); });
  return texts;
}

std::string YamlValue::checkedPath(const std::string& text) const {
  const std::filesystem::path path(text);
  const bool leaves = std::ranges::find(path, "..") != path.end();
  if (path.empty() || path.is_absolute() || leaves) fail("has to stay in the session folder");
  static constexpr std::array<std::string_view, 9> kReserved{"active-fonts",
                                                             "framework-answers",
                                                             "framework-state",
                                                             "journal",
                                                             "vault",
                                                             ".stdout",
                                                             ".stderr",
                                                             ".crash",
                                                             "Tamberlink.framework"};
  if (std::ranges::find(kReserved, path.begin()->string()) != kReserved.end()) {
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
  std::ranges::transform(readers, std::back_inserter(known), &KeyReader::key);
  forEachField([&](const YamlValue& value) {
    if (std::ranges::find(known, value.key()) != known.end()) return;
    if (explain) explain(value);
    value.failForUnknown("key", known);
  });
  bool isRight = true;
  for (const KeyReader& reader : readers) {
    const bool isRead = CollectFaults([&] {
      const std::optional<YamlValue> value = find(reader.key);
      if (value) return reader.read(*value);
      if (reader.required) fail(fmt::format("the key '{}' is missing", reader.key));
    });
    isRight = isRight && isRead;
  }
  if (!isRight) mFile->throwFaults();
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
