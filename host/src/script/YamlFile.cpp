#include "YamlFile.h"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

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

}  // namespace host
