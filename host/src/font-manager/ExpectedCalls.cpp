#include "ExpectedCalls.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <utility>

#include "FrameworkLog.h"
#include "Operations.h"

namespace host {
namespace {

struct ExpectedCall {
  int64_t tick = 0;
  std::string operation;
  std::vector<std::pair<std::string, std::string>> fields;
};

std::string Show(const ExpectedCall& call) {
  std::string text = fmt::format("{} {}", call.tick, call.operation);
  for (const auto& [name, value] : call.fields) text += fmt::format("  {}={}", name, value);
  return EscapeControls(text);
}

// Reads "TICK OPERATION", or a map from that text to arguments and results.
ExpectedCall ReadExpectedCall(const YamlValue& value) {
  ExpectedCall call;
  const bool hasFields = value.isMap();
  const auto entries = hasFields ? value.fields() : std::vector<YamlValue>();
  if (hasFields && entries.size() != 1) value.fail("has to be one call");
  const std::string head = hasFields ? entries.front().key() : value.text();
  std::istringstream words(head);
  std::string rest;
  if (!(words >> call.tick >> call.operation) || words >> rest) {
    value.fail(fmt::format("'{}' has to be a tick and an operation", head));
  }
  const Operation& operation = FindOperation(value, call.operation);
  if (!hasFields) return call;
  entries.front().forEachField([&](const YamlValue& field) {
    const std::string& name = field.key();
    if (name != "result" && !operation.has(name)) {
      field.fail(fmt::format("{} has no argument '{}'", operation.name, name));
    }
    call.fields.emplace_back(name, field.text());
  });
  return call;
}

// Compares as numbers if both are: "0x10" is the same as "16".
bool SameValue(const std::string& one, const std::string& other) {
  if (one == other) return true;
  char* oneEnd = nullptr;
  char* otherEnd = nullptr;
  const long long oneNumber = std::strtoll(one.c_str(), &oneEnd, 0);
  const long long otherNumber = std::strtoll(other.c_str(), &otherEnd, 0);
  return !one.empty() && !other.empty() && *oneEnd == 0 && *otherEnd == 0 &&
         oneNumber == otherNumber;
}

bool Matches(const ExpectedCall& expected, const FrameworkCall& call) {
  return expected.tick == call.tick && expected.operation == call.operation &&
         std::all_of(expected.fields.begin(), expected.fields.end(), [&](const auto& field) {
           const std::string* const found = FindLast(call.fields, field.first);
           return found && SameValue(field.second, *found);
         });
}

// Lists the calls as a diff: "-" marks a call that was only expected, "+" one that was only found.
std::string CompareCalls(const std::vector<ExpectedCall>& expected,
                         const std::vector<FrameworkCall>& found) {
  std::string lines;
  bool differs = false;
  for (size_t i = 0; i < std::max(expected.size(), found.size()); ++i) {
    const bool matches = i < expected.size() && i < found.size() && Matches(expected[i], found[i]);
    differs = differs || !matches;
    if (i < expected.size()) {
      lines += fmt::format("\n    {} {}", matches ? ' ' : '-', Show(expected[i]));
    }
    if (i < found.size() && !matches) {
      lines += fmt::format("\n    + {} {}", found[i].tick, found[i].text);
    }
  }
  return differs ? "    (- expected, + found)" + lines : "";
}

// Flattens lists within the list: a variable can stand for several calls, or for none.
void Flatten(const YamlValue& value, std::vector<ExpectedCall>& calls, int depth = 0) {
  constexpr int kMostLists = 8;
  if (depth > kMostLists) value.fail("has too many lists within lists");
  value.forEachElement([&](const YamlValue& call) {
    if (call.isList()) {
      Flatten(call, calls, depth + 1);
    } else {
      calls.push_back(ReadExpectedCall(call));
    }
  });
}

}  // namespace

Check ReadExpectedCalls(const YamlValue& value) {
  if (value.isText()) {
    if (value.text() != "any") value.fail("has to be a list of calls, or any");
    return [](Host& host) {
      host.timeline.drain();
      TheFrameworkLog().calls.clear();
      return std::string();
    };
  }
  std::vector<ExpectedCall> expected;
  Flatten(value, expected);
  return [expected](Host& host) {
    host.timeline.drain();
    return CompareCalls(expected, std::exchange(TheFrameworkLog().calls, {}));
  };
}

}  // namespace host
