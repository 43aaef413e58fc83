#include "Expectations.h"

#include <fmt/format.h>
#include <fnmatch.h>
#include <malloc.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <sstream>
#include <utility>

#include "TextFile.h"

namespace host {
namespace {

using Texts = std::vector<std::string>;

// What the plug-in says of paths is compared as it is shown: relative to the session folder.
Texts Shorten(const Host& host, Texts texts) {
  for (std::string& text : texts) host.timeline.shortenPaths(text);
  return texts;
}

// `${session}` in an expectation stands for the session folder.
Texts Resolve(const Host& host, Texts texts) {
  for (std::string& text : texts) ReplaceAll(text, "${session}", host.folder().string());
  return Shorten(host, std::move(texts));
}

template <typename Find>
Check Compare(Texts expected, Find find) {
  return [expected = std::move(expected), find](Host& host) {
    return CompareLists(Resolve(host, expected), Shorten(host, find(host)));
  };
}

// Returns all that is wrong.
Check All(std::vector<Check> checks) {
  return [checks = std::move(checks)](Host& host) {
    Texts differences;
    for (const Check& check : checks) {
      if (std::string difference = check(host); !difference.empty()) {
        differences.push_back(std::move(difference));
      }
    }
    return Join(differences, "\n");
  };
}

// Finds what a key is about.
using Find = Texts (*)(Host&);

Check ReadList(const YamlValue& value, Find find) {
  return Compare(value.texts(), find);
}

Check ReadText(const YamlValue& value, Find find) {
  return Compare({value.text()}, find);
}

Texts YesOrNo(bool value) {
  return {value ? "true" : "false"};
}

Check ReadBoolean(const YamlValue& value, Find find) {
  return Compare(YesOrNo(value.boolean()), find);
}

Check ReadCount(const YamlValue& value, Find find) {
  return Compare({std::to_string(value.integer(0, 1'000'000))}, find);
}

// Finds a recorded list, and empties it.
template <Texts Record::*list>
Texts Take(Host& host) {
  return std::exchange(host.timeline.record.*list, {});
}

// Finds the menu items with the flag, in the order of their commands.
template <bool MenuItem::*flag>
Texts FindItems(Host& host) {
  Texts texts;
  for (const auto& [command, item] : host.menus.items) {
    if (item.*flag) texts.push_back(item.text);
  }
  return texts;
}

Check ReadPreferences(const YamlValue& value, Find /*find*/) {
  std::vector<Check> checks;
  value.forEachField([&](const YamlValue& section) {
    section.forEachField([&](const YamlValue& text) {
      const std::string name = fmt::format("{} / {} = ", section.key(), text.key());
      const auto find = [name, section = section.key(), key = text.key()](Host& host) {
        const auto preference = host.preferences.find({section, key});
        return Texts{name + (preference == host.preferences.end() ? "none" : preference->second)};
      };
      checks.push_back(Compare({name + text.text()}, find));
    });
  });
  return All(std::move(checks));
}

// Returns whether the line is the expected one, in which each "..." stands for any text.
bool FitsLine(std::string expected, const std::string& line) {
  for (const char* const special : {"\\", "*", "?", "["}) {
    ReplaceAll(expected, special, std::string("\\") + special);
  }
  ReplaceAll(expected, "...", "*");
  // `fnmatch` takes a NUL for the end.
  return line.find('\0') == std::string::npos && fnmatch(expected.c_str(), line.c_str(), 0) == 0;
}

// Looks for the lines one after the other. Others may come between.
std::string FindLines(const Host& host, const std::string& path, const Texts& expected) {
  const Texts lines = Shorten(host, ReadLines(host.inFolder(path)));
  auto next = lines.begin();
  for (const std::string& wanted : Resolve(host, expected)) {
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

// Reads the text of a file, or "none" for a file that must not be there, or lines that are there.
Check ReadFile(const YamlValue& value) {
  const std::string path = value.checkedPath(value.key());
  if (value.isMap()) {
    Texts lines;
    value.readKeys({{"has lines", Into(lines), true}});
    return [path, lines](Host& host) { return FindLines(host, path, lines); };
  }
  return Compare({path + ": " + value.text()}, [path](Host& host) {
    std::ostringstream text;
    const std::ifstream stream(host.inFolder(path), std::ios::binary);
    if (stream) text << stream.rdbuf();
    return Texts{path + ": " + (stream ? text.str() : "none")};
  });
}

Check ReadFiles(const YamlValue& value, Find /*find*/) {
  std::vector<Check> checks;
  value.forEachField([&](const YamlValue& file) { checks.push_back(ReadFile(file)); });
  return All(std::move(checks));
}

// What the process that plays a session holds: how much, and by how much it may grow.
struct Usage {
  const char* what;
  int64_t now;
  int64_t allowed = 0;
};

template <typename Iterator>
int64_t CountEntries(const std::filesystem::path& folder) {
  return std::distance(Iterator(folder), Iterator());
}

std::array<Usage, 5> MeasureUsage(Host& host) {
  using std::filesystem::directory_iterator;
  using std::filesystem::recursive_directory_iterator;
  // Freed blocks that the allocator keeps at hand count as in use. They came to 2 KB.
  constexpr int64_t kLittleMemory = 16'384;
  const auto held = [&](Holding kind) {
    return static_cast<int64_t>(host.ledger.held(kind).size());
  };
  // Large blocks lie outside of the heap. A sanitizer has a heap of its own.
  const struct mallinfo2 heap = mallinfo2();
  const auto memory = static_cast<int64_t>(heap.uordblks + heap.hblkhd - host.ledger.bytesKept());
  return {{{"bytes of memory", memory, kLittleMemory},
           {"open descriptors", CountEntries<directory_iterator>("/proc/self/fd")},
           {"files", CountEntries<recursive_directory_iterator>(host.folder())},
           {"memory handles and blocks", held(Holding::memoryHandle) + held(Holding::block)},
           {"acquired suites", held(Holding::suite)}}};
}

// Compares with the first time.
Check ReadGrowth(const YamlValue& value, Find /*find*/) {
  if (value.text() != "none") value.fail("has to be none");
  return [](Host& host) {
    static const std::array<Usage, 5> before = MeasureUsage(host);
    Texts grown;
    const std::array<Usage, 5> after = MeasureUsage(host);
    for (size_t i = 0; i < after.size(); ++i) {
      const auto& [what, now, allowed] = after[i];
      if (now <= before[i].now + allowed) continue;
      grown.push_back(fmt::format("    {}: {} before, {} now", what, before[i].now, now));
    }
    return Join(grown, "\n");
  };
}

struct Key {
  std::string_view name;
  bool lasts;                                       // says what is true at a point
  Check (*read)(const YamlValue&, Find) = nullptr;  // null for a key whose facts are the judge's
  Find find = nullptr;
};

constexpr std::array kKeys{
    Key{"missing fonts", true, ReadList, [](Host& host) { return host.project().missingFonts; }},
    Key{"project", true, ReadText,
        [](Host& host) {
          const std::string& path = host.project().path;
          return Texts{path.empty() ? "none" : path};
        }},
    Key{"dirty", true, ReadBoolean, [](Host& host) { return YesOrNo(host.project().dirty); }},
    Key{"dialogs shown", false, ReadList, Take<&Record::dialogsShown>},
    Key{"activated", false, ReadList, Take<&Record::activated>},
    Key{"font updates", false, ReadCount,
        [](Host& host) {
          return Texts{std::to_string(std::exchange(host.timeline.record.fontUpdates, 0))};
        }},
    Key{"front", true, ReadText, [](Host& host) { return Texts{host.frontApplication()}; }},
    Key{"menu enabled", true, ReadList, FindItems<&MenuItem::enabled>},
    Key{"menu checked", true, ReadList, FindItems<&MenuItem::checked>},
    Key{"command handled", true, ReadBoolean,
        [](Host& host) { return YesOrNo(host.commandWasHandled); }},
    Key{"preferences", true, ReadPreferences},
    Key{"files", true, ReadFiles},
    Key{"growth", false, ReadGrowth},
    Key{"stdout", false, ReadList, Take<&Record::stdoutLines>},
    Key{"stderr", false, ReadList, Take<&Record::stderrLines>},
    Key{"errors", false},
    Key{"reports", false},
    Key{"not supplied", false},
    Key{"findings", false},
};
static_assert(std::ranges::all_of(kFindingKinds, [](const FindingKind& kind) {
  return kind.expectKey.empty() || std::ranges::any_of(kKeys, [&](const Key& key) {
           return key.name == kind.expectKey && !key.read;
         });
}));

const Key* FindKey(std::string_view name) {
  const auto* const key = std::ranges::find(kKeys, name, &Key::name);
  return key == kKeys.end() ? nullptr : key;
}

// Compares at once. A tolerant session compares nothing.
Action CompareNow(const YamlValue& value, Check check) {
  return [key = value.key(), place = value.place(), check = std::move(check)](Host& host) {
    if (host.settings().tolerant) return;
    host.timeline.addExpectation(key, place, check(host));
  };
}

Action HaveJudged(const YamlValue& value) {
  if (value.key() == "findings") {
    value.forEachElement([&](const YamlValue& name) {
      const std::optional<Finding> finding = FindingNamed(name.text());
      if (!finding || KindOf(*finding).expectKey != value.key()) {
        name.fail(fmt::format("there is no finding '{}' that a session can expect", name.text()));
      }
    });
  }
  return [key = value.key(), place = value.place(), expected = value.texts()](Host& host) {
    host.timeline.addExpectation(key, place, {}, Resolve(host, expected));
  };
}

Action ReadExpectation(const YamlValue& value, const SessionPart& part) {
  const auto ofPart = part.expectations.find(value.key());
  if (ofPart != part.expectations.end()) return CompareNow(value, ofPart->second(value));
  if (const Key* const key = FindKey(value.key())) {
    return key->read ? CompareNow(value, key->read(value, key->find)) : HaveJudged(value);
  }
  std::vector<std::string_view> names;
  for (const auto& [name, read] : part.expectations) names.push_back(name);
  for (const Key& each : kKeys) names.push_back(each.name);
  value.failForUnknown("key", names);
}

}  // namespace

void RefuseExpectation(const YamlValue& value, const SessionPart& part) {
  if (FindKey(value.key()) || part.expectations.contains(value.key())) {
    value.fail("is a key of 'expect': indent it below an 'expect'");
  }
}

Check ReadLasting(const std::vector<YamlValue>& values) {
  std::vector<std::string_view> names;
  for (const Key& key : kKeys) {
    if (key.lasts) names.push_back(key.name);
  }
  std::vector<Check> checks;
  for (const YamlValue& value : values) {
    const Key* const key = FindKey(value.key());
    if (!key || !key->lasts) value.failForUnknown("key", names);
    checks.push_back(key->read(value, key->find));
  }
  return All(std::move(checks));
}

Action ReadExpectations(const YamlValue& value, const SessionPart& part) {
  std::vector<Action> expectations;
  value.forEachField(
      [&](const YamlValue& key) { expectations.push_back(ReadExpectation(key, part)); });
  return [expectations](Host& host) {
    host.timeline.drain();
    for (const Action& compare : expectations) compare(host);
  };
}

}  // namespace host
