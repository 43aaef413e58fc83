#include "Expectations.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <sstream>
#include <utility>

#include "TextFile.h"

namespace host {
namespace {

// Returns what is wrong, or an empty text.
using Check = std::function<std::string(Host&)>;

std::string Mismatch(const std::string& expected, const std::string& found) {
  return fmt::format("    expected: {}\n    found:    {}", expected, found);
}

std::string Show(const std::vector<std::string>& list) {
  return list.empty() ? "nothing" : Join(list, ", ");
}

Check CompareText(std::string expected, std::string (*find)(Host&)) {
  return [expected = std::move(expected), find](Host& host) {
    const std::string found = find(host);
    return found == expected ? "" : Mismatch(expected, found);
  };
}

Check CompareList(const YamlValue& value, std::vector<std::string> (*find)(Host&)) {
  return [expected = value.texts(), find](Host& host) {
    const std::vector<std::string> found = find(host);
    return found == expected ? "" : Mismatch(Show(expected), Show(found));
  };
}

// Compares a recorded list, then empties it.
template <std::vector<std::string> Record::*kList>
Check CompareRecorded(const YamlValue& value) {
  return CompareList(value,
                     [](Host& host) { return std::exchange(host.timeline.record.*kList, {}); });
}

Check ReadMissingFonts(const YamlValue& value) {
  return CompareList(value, [](Host& host) { return host.project().missingFonts; });
}

Check ReadProject(const YamlValue& value) {
  return CompareText(value.text(), [](Host& host) {
    const std::string& path = host.project().path;
    return path.empty() ? "none" : std::filesystem::relative(path).string();
  });
}

std::string YesOrNo(bool value) {
  return value ? "true" : "false";
}

Check ReadDirty(const YamlValue& value) {
  return CompareText(YesOrNo(value.boolean()),
                     [](Host& host) { return YesOrNo(host.project().dirty); });
}

Check ReadCommandHandled(const YamlValue& value) {
  return CompareText(YesOrNo(value.boolean()),
                     [](Host& host) { return YesOrNo(host.commandWasHandled); });
}

Check ReadFontUpdates(const YamlValue& value) {
  return CompareText(std::to_string(value.integer(0, 1'000'000)), [](Host& host) {
    return std::to_string(std::exchange(host.timeline.record.fontUpdates, 0));
  });
}

Check ReadFront(const YamlValue& value) {
  return CompareText(value.text(), [](Host& host) { return host.frontApplication(); });
}

Check ReadMenuEnabled(const YamlValue& value) {
  return CompareList(value, [](Host& host) { return host.menus.enabledItems(); });
}

Check ReadPreferences(const YamlValue& value) {
  std::vector<std::array<std::string, 3>> entries;
  for (const auto& [section, keys] : value.fields()) {
    for (const auto& [key, text] : keys.fields()) entries.push_back({section, key, text.text()});
  }
  return [entries](Host& host) {
    for (const auto& [section, key, expected] : entries) {
      const std::string* preference = host.findPreference(section, key);
      const std::string found = preference ? *preference : "none";
      if (found != expected) return Mismatch(expected, found);
    }
    return std::string();
  };
}

struct ExpectedCall {
  int64_t tick = 0;
  std::string operation;
  std::vector<std::pair<std::string, std::string>> fields;
};

std::string Show(const ExpectedCall& call) {
  std::string text = fmt::format("{} {}", call.tick, call.operation);
  for (const auto& [name, value] : call.fields) text += fmt::format("  {}={}", name, value);
  ReplaceAll(text, "\n", "\\n");
  return text;
}

// Reads "TICK OPERATION", or a map from that text to arguments and results.
ExpectedCall ReadExpectedCall(const YamlValue& value) {
  ExpectedCall call;
  std::string head;
  if (value.isMap()) {
    const auto entries = value.fields();
    if (entries.size() != 1) value.fail("has to be one call");
    head = entries.front().first;
    for (const auto& [name, field] : entries.front().second.fields()) {
      call.fields.emplace_back(name, field.text());
    }
  } else {
    head = value.text();
  }
  std::istringstream words(head);
  std::string rest;
  if (!(words >> call.tick >> call.operation) || words >> rest) {
    value.fail(fmt::format("'{}' has to be a tick and an operation", head));
  }
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
           const auto found = call.fields.find(field.first);
           return found != call.fields.end() && SameValue(field.second, found->second);
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
void ReadExpectedCalls(const YamlValue& value, std::vector<ExpectedCall>& calls) {
  for (const YamlValue& call : value.list()) {
    if (call.isList()) {
      ReadExpectedCalls(call, calls);
    } else {
      calls.push_back(ReadExpectedCall(call));
    }
  }
}

Check ReadFramework(const YamlValue& value) {
  std::vector<ExpectedCall> expected;
  ReadExpectedCalls(value, expected);
  return [expected](Host& host) {
    return CompareCalls(expected, std::exchange(host.timeline.record.frameworkCalls, {}));
  };
}

struct Kind {
  std::string_view key;
  Check (*read)(const YamlValue&);
};

constexpr std::array kKinds{
    Kind{"missing fonts", ReadMissingFonts},
    Kind{"project", ReadProject},
    Kind{"dirty", ReadDirty},
    Kind{"dialogs shown", CompareRecorded<&Record::dialogsShown>},
    Kind{"errors", CompareRecorded<&Record::errors>},
    Kind{"reports", CompareRecorded<&Record::reports>},
    Kind{"not supplied", CompareRecorded<&Record::notSupplied>},
    Kind{"framework", ReadFramework},
    Kind{"activated", CompareRecorded<&Record::activated>},
    Kind{"font updates", ReadFontUpdates},
    Kind{"front", ReadFront},
    Kind{"menu enabled", ReadMenuEnabled},
    Kind{"command handled", ReadCommandHandled},
    Kind{"preferences", ReadPreferences},
    Kind{"stdout", CompareRecorded<&Record::stdoutLines>},
};

struct Expectation {
  std::string key;
  std::string place;
  Check check;
};

Expectation ReadExpectation(const std::string& key, const YamlValue& value) {
  const auto* const kind =
      std::find_if(kKinds.begin(), kKinds.end(), [&](const Kind& each) { return each.key == key; });
  if (kind == kKinds.end()) {
    std::vector<std::string> keys(kKinds.size());
    std::transform(kKinds.begin(), kKinds.end(), keys.begin(),
                   [](const Kind& each) { return std::string(each.key); });
    value.fail(fmt::format("unknown key; known are {}", Join(keys, ", ")));
  }
  return {key, value.place(), kind->read(value)};
}

}  // namespace

std::function<void(Host&)> ReadExpectations(const YamlValue& value) {
  std::vector<Expectation> expectations;
  for (const auto& [key, field] : value.fields()) {
    expectations.push_back(ReadExpectation(key, field));
  }
  return [expectations](Host& host) {
    host.timeline.drain();
    std::vector<std::string> met;
    for (const Expectation& expectation : expectations) {
      const std::string mismatch = expectation.check(host);
      if (mismatch.empty()) {
        met.push_back(expectation.key);
        continue;
      }
      host.timeline.add(Actor::session, fmt::format("NOT as expected: {}", expectation.key));
      host.fail(fmt::format("{}: {}\n{}", expectation.place, expectation.key, mismatch));
    }
    if (!met.empty()) {
      host.timeline.add(Actor::session, fmt::format("as expected: {}", Join(met, ", ")));
    }
  };
}

}  // namespace host
