#include "Expectations.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <utility>

#include "Comparison.h"
#include "TextFile.h"
#include "Usage.h"

namespace host {
namespace {

using Texts = std::vector<std::string>;

// What the plug-in says of paths is compared as it is shown: relative to the session folder.
std::string Shorten(const Host& host, std::string text) {
  host.timeline.shortenPaths(text);
  return text;
}

Texts Shorten(const Host& host, Texts texts) {
  for (std::string& text : texts) host.timeline.shortenPaths(text);
  return texts;
}

// `${session}` in an expectation stands for the session folder.
std::string Resolve(const Host& host, std::string text) {
  ReplaceAll(text, "${session}", host.folder().string());
  return text;
}

Check CompareText(std::string expected, std::string (*find)(Host&)) {
  return [expected = std::move(expected), find](Host& host) {
    const std::string found = Shorten(host, find(host));
    const std::string wanted = Shorten(host, Resolve(host, expected));
    return found == wanted ? "" : DescribeMismatch(wanted, found);
  };
}

Check CompareList(const YamlValue& value, Texts (*find)(Host&)) {
  return [expected = value.texts(), find](Host& host) {
    Texts wanted = expected;
    for (std::string& text : wanted) text = Resolve(host, text);
    return CompareLists(Shorten(host, std::move(wanted)), Shorten(host, find(host)));
  };
}

// Compares a recorded list, then empties it.
template <Texts Record::*list>
Check CompareRecorded(const YamlValue& value) {
  return CompareList(value,
                     [](Host& host) { return std::exchange(host.timeline.record.*list, {}); });
}

Check ReadMissingFonts(const YamlValue& value) {
  return CompareList(value, [](Host& host) { return host.project().missingFonts; });
}

Check ReadProject(const YamlValue& value) {
  return CompareText(value.text(), [](Host& host) {
    const std::string& path = host.project().path;
    return path.empty() ? "none" : path;
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
  return CompareList(value, [](Host& host) { return host.menus.textsOf(&MenuItem::enabled); });
}

Check ReadMenuChecked(const YamlValue& value) {
  return CompareList(value, [](Host& host) { return host.menus.textsOf(&MenuItem::checked); });
}

Check ReadPreferences(const YamlValue& value) {
  std::vector<std::array<std::string, 3>> entries;
  value.forEachField([&](const std::string& section, const YamlValue& keys) {
    keys.forEachField([&](const std::string& key, const YamlValue& text) {
      entries.push_back({section, key, text.text()});
    });
  });
  return [entries](Host& host) {
    Texts expected;
    Texts found;
    for (const auto& [section, key, text] : entries) {
      const auto preference = host.preferences.find({section, key});
      const std::string present =
          preference == host.preferences.end() ? "none" : Shorten(host, preference->second);
      const std::string wanted = Shorten(host, Resolve(host, text));
      if (present == wanted) continue;
      expected.push_back(fmt::format("{} / {} = {}", section, key, wanted));
      found.push_back(fmt::format("{} / {} = {}", section, key, present));
    }
    return CompareLists(expected, found);
  };
}

// Compares with the first time.
Check ReadGrowth(const YamlValue& value) {
  if (value.text() != "none") value.fail("has to be none");
  return [](Host& host) {
    static const Usage before = MeasureUsage(host);
    return DescribeGrowth(before, MeasureUsage(host));
  };
}

// Returns whether the line is the expected one, in which each "..." stands for any text.
bool FitsLine(const std::string& expected, std::string_view line) {
  const Texts parts = Split(expected, "...");
  if (parts.size() == 1) return line == expected;
  if (!line.starts_with(parts.front())) return false;
  line.remove_prefix(parts.front().size());
  for (size_t i = 1; i + 1 < parts.size(); ++i) {
    const size_t place = line.find(parts[i]);
    if (place == std::string_view::npos) return false;
    line.remove_prefix(place + parts[i].size());
  }
  return line.ends_with(parts.back());
}

// Looks for the lines one after the other. Others may come between.
std::string FindLines(const Host& host, const std::string& path, const Texts& expected) {
  const Texts lines = Shorten(host, ReadLines(host.inFolder(path)));
  auto next = lines.begin();
  for (const std::string& text : expected) {
    const std::string wanted = Shorten(host, Resolve(host, text));
    const auto found = std::find_if(
        next, lines.end(), [&](const std::string& line) { return FitsLine(wanted, line); });
    if (found == lines.end()) {
      const std::string rest = Join({next, lines.end()}, "\n              ");
      return fmt::format("    expected: {}: {}\n    found:    {}", path, EscapeControls(wanted),
                         rest.empty() ? "no more lines" : EscapeLines(rest));
    }
    next = std::next(found);
  }
  return "";
}

Check ReadHasLines(const std::string& path, const YamlValue& value) {
  const auto fields = value.fields({"has lines"});
  const YamlValue* lines = Find(fields, "has lines");
  if (!lines) value.fail("has to be a text, or a map with the key 'has lines'");
  return [path, expected = lines->texts()](Host& host) { return FindLines(host, path, expected); };
}

// Texts by file, or "none" for a file that must not be there, or lines that are there.
Check ReadFiles(const YamlValue& value) {
  std::vector<std::pair<std::string, std::string>> files;
  std::vector<Check> checks;
  value.forEachField([&](const std::string& path, const YamlValue& text) {
    if (text.isMap()) {
      checks.push_back(ReadHasLines(text.checkedPath(path), text));
    } else {
      files.emplace_back(text.checkedPath(path), text.text());
    }
  });
  return [files, checks](Host& host) {
    for (const Check& check : checks) {
      if (std::string difference = check(host); !difference.empty()) return difference;
    }
    Texts expected;
    Texts found;
    for (const auto& [path, text] : files) {
      std::ostringstream present;
      const std::ifstream stream(host.inFolder(path), std::ios::binary);
      if (stream) present << stream.rdbuf();
      expected.push_back(path + ": " + Shorten(host, Resolve(host, text)));
      found.push_back(path + ": " + (stream ? Shorten(host, present.str()) : "none"));
    }
    return CompareLists(expected, found);
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
    Kind{"activated", CompareRecorded<&Record::activated>},
    Kind{"font updates", ReadFontUpdates},
    Kind{"front", ReadFront},
    Kind{"menu enabled", ReadMenuEnabled},
    Kind{"menu checked", ReadMenuChecked},
    Kind{"command handled", ReadCommandHandled},
    Kind{"preferences", ReadPreferences},
    Kind{"files", ReadFiles},
    Kind{"growth", ReadGrowth},
    Kind{"stdout", CompareRecorded<&Record::stdoutLines>},
    Kind{"stderr", CompareRecorded<&Record::stderrLines>},
};

// Those whose facts are the judge's.
constexpr std::array<std::string_view, 4> kJudgedKeys{"errors", "reports", "not supplied",
                                                      "findings"};

bool IsOfPart(std::string_view key, const SessionPart& part) {
  const std::vector<std::string_view> keys = part.expectations();
  return std::find(keys.begin(), keys.end(), key) != keys.end();
}

bool IsJudged(std::string_view key) {
  return std::find(kJudgedKeys.begin(), kJudgedKeys.end(), key) != kJudgedKeys.end();
}

const Kind* FindKind(std::string_view key) {
  const auto* const kind =
      std::find_if(kKinds.begin(), kKinds.end(), [&](const Kind& each) { return each.key == key; });
  return kind == kKinds.end() ? nullptr : kind;
}

// Compares at once. A tolerant session compares nothing.
Action ReadCheck(const std::string& key, const YamlValue& value, Check check) {
  return [key, place = value.place(), check = std::move(check)](Host& host) {
    if (host.settings().tolerant) return;
    host.timeline.addExpectation(key, place, check(host));
  };
}

Action ReadJudged(const std::string& key, const YamlValue& value) {
  if (key == "findings") {
    value.forEachElement([&](const YamlValue& name) {
      const std::optional<Finding> finding = FindingNamed(name.text());
      if (!finding || KindOf(*finding).expectKey != key) {
        name.fail(fmt::format("there is no finding '{}' that a session can expect", name.text()));
      }
    });
  }
  return [key, place = value.place(), expected = value.texts()](Host& host) {
    Texts wanted = expected;
    for (std::string& text : wanted) text = Resolve(host, text);
    host.expectFacts(key, place, Shorten(host, std::move(wanted)));
  };
}

Action ReadExpectation(const std::string& key, const YamlValue& value, const SessionPart& part) {
  if (IsOfPart(key, part)) return ReadCheck(key, value, part.readExpectation(key, value));
  if (IsJudged(key)) return ReadJudged(key, value);
  if (const Kind* const kind = FindKind(key)) return ReadCheck(key, value, kind->read(value));
  std::vector<std::string_view> keys = part.expectations();
  keys.insert(keys.end(), kJudgedKeys.begin(), kJudgedKeys.end());
  for (const Kind& each : kKinds) keys.push_back(each.key);
  value.failForUnknown("key", keys);
}

}  // namespace

void FailForUnknown(const YamlValue& value, std::string_view what,
                    const std::vector<std::string_view>& known, const SessionPart& part) {
  if (FindKind(value.key()) || IsJudged(value.key()) || IsOfPart(value.key(), part)) {
    value.fail("is a key of 'expect': indent it below an 'expect'");
  }
  value.failForUnknown(what, known);
}

Check ReadPeek(const std::string& key, const YamlValue& value) {
  static constexpr std::array<std::string_view, 9> kLasting{
      "missing fonts", "project",         "dirty",       "front", "menu enabled",
      "menu checked",  "command handled", "preferences", "files"};
  const Kind* const kind = FindKind(key);
  if (kind && std::find(kLasting.begin(), kLasting.end(), key) != kLasting.end()) {
    return kind->read(value);
  }
  value.failForUnknown("key", {kLasting.begin(), kLasting.end()});
}

Action ReadExpectations(const YamlValue& value, const SessionPart& part) {
  std::vector<Action> expectations;
  value.forEachField([&](const std::string& key, const YamlValue& field) {
    expectations.push_back(ReadExpectation(key, field, part));
  });
  return [expectations](Host& host) {
    host.timeline.drain();
    for (const Action& compare : expectations) compare(host);
  };
}

}  // namespace host
