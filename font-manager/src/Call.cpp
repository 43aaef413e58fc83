#include "Call.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <stdexcept>

#include "ErrorCodes.h"
#include "SessionFolder.h"

namespace tamberlink {
namespace {

// Returns the fields of the answers to this call: the operation's next one, and the one that names
// this call by its number, which goes first. The file only grows, so that the number of answers
// taken tells which one is next.
std::map<std::string, std::string> takeAnswer(const std::string& operation) {
  static std::map<std::string, size_t> taken;
  static std::map<std::string, size_t> calls;
  const std::string call = std::to_string(++calls[operation]);
  size_t number = 0;
  std::optional<std::map<std::string, std::string>> next;
  std::map<std::string, std::string> fields;
  for (const std::string& line : readSessionLines("framework-answers")) {
    const auto [name, rest] = splitOnce(line, '\t');
    if (name != operation) continue;
    std::map<std::string, std::string> answer;
    for (const std::string& field : split(rest, '\t')) answer.insert(splitOnce(field, '='));
    if (const auto named = answer.find("call"); named != answer.end()) {
      if (named->second == call) fields = answer;
    } else if (number++ == taken[operation]) {
      next = answer;
    }
  }
  if (!next) return fields;
  ++taken[operation];
  fields.merge(*next);
  return fields;
}

std::string escape(std::string_view text) {
  std::string escaped;
  for (const char character : text) {
    switch (character) {
      case '\t':
        escaped += "\\t";
        break;
      case '\n':
        escaped += "\\n";
        break;
      case '\\':
        escaped += "\\\\";
        break;
      default:
        escaped += character;
    }
  }
  return escaped;
}

// Parses a whole number, decimal or with `0x`. Throws `std::invalid_argument` for any other text
// and for one that the type can't hold.
template <typename Number>
Number parseNumber(const std::string& text) {
  const bool isHex = text.rfind("0x", 0) == 0;
  const char* const end = text.data() + text.size();
  Number number = 0;
  const auto [rest, error] =
      std::from_chars(text.data() + (isHex ? 2 : 0), end, number, isHex ? 16 : 10);
  if (error != std::errc() || rest != end) throw std::invalid_argument(text);
  return number;
}

}  // namespace

Call::Call(const char* operation) : mAnswer(takeAnswer(operation)), mLine(operation) {}

void Call::note(std::string_view name, std::string_view value) {
  mLine.append("\t").append(name).append("=").append(escape(value));
}

void Call::note(std::string_view name, uint64_t value) {
  note(name, std::to_string(value));
}

void Call::noteFlag(std::string_view name, bool value) {
  note(name, value ? "true" : "false");
}

std::optional<std::string> Call::answer(const std::string& field) const {
  const auto found = mAnswer.find(field);
  if (found == mAnswer.end()) return std::nullopt;
  return found->second;
}

void Call::leaveText(std::string_view name, char* text, uint64_t capacity) {
  if (std::optional<std::string> answered = answer("text")) {
    std::replace(answered->begin(), answered->end(), ';', '\n');
    mAnswerFits = writeBuffer(text, capacity, *answered);
  }
  if (answer("fill") == "true") std::memset(text, 'x', capacity);
  note(name, readBuffer(text, capacity));
}

void Call::leaveSize(uint64_t& size) {
  if (const auto answered = answer("size")) size = parseNumber<uint64_t>(*answered);
  note("size", size);
}

void Call::leaveCount(int32_t& count) {
  if (const auto answered = answer("count")) count = parseNumber<int32_t>(*answered);
  note("count", std::to_string(count));
}

uint32_t Call::end(uint32_t result) {
  if (!mAnswerFits) result = CoreErrorCodes::kIndexOutOfRange;
  if (const auto answered = answer("result")) {
    result = parseNumber<uint32_t>(*answered);
  }
  std::array<char, sizeof "0x00000000"> text{};
  std::snprintf(text.data(), text.size(), "0x%08X", result);
  note("result", text.data());
  end();
  return result;
}

void Call::end() const {
  appendLine("journal", mLine);
}

}  // namespace tamberlink
