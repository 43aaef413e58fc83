#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "PlayHost.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

/// Returns what `aegp-host` says of the session, with the file's name without its folder.
std::string FaultsOf(const std::string& session) {
  const Played played = Play(session, kWithFontManager);
  EXPECT_EQ(played.code, 2) << session;
  std::string faults = played.output;
  const size_t folder = faults.find("story.yaml");
  if (folder == std::string::npos) return faults;
  const std::string before = faults.substr(0, folder);
  for (size_t at = 0; (at = faults.find(before, at)) != std::string::npos;) {
    faults.erase(at, before.size());
  }
  return faults;
}

TEST(SessionFile, SaysWhereItIsNoYamlAndWhatToWriteInstead) {
  const std::string tab = "a tab indents the line: indent it with spaces\n";
  const std::string quote = "a quote has no end in its line: close it\n";
  const std::string goesOn =
      "a text goes on after its quote: write a quote within quotes as '' or \\\"\n";
  const std::string colon =
      "a second ':' in a line: write a text that holds one in quotes, as \"a: b\", and a map in "
      "braces, as {a: b}\n";
  const std::string depth =
      "the line belongs to none above it: indent a key like the other keys of its map, and a '-' "
      "like the others of its list\n";
  const std::string key =
      "a key can't be here: indent it like the other keys of its map, and end the line above with "
      "a ':' if it belongs below that\n";
  const std::string second =
      "a second document begins: write it to a file of its own, or as a variant\n";
  const std::string bracket = "a '[' or '{' has no end, or lacks a ',': close it\n";
  const std::vector<std::pair<std::string, std::string>> cases{
      {"steps:\n\t- tick\n", "2: " + tab},
      {"steps:\n  - tick\n \t- tick\n", "3: " + tab},
      {"host:\n\tversion: 114.0\nsteps: []\n", "2: " + tab},
      {"about: A user: opens\nsteps: []\n", "1: " + colon},
      {"steps:\n  - tick\n  - pick: Mine: one\n", "3: " + colon},
      {"steps:\n  - expect: {project: a: b}\n", "2: " + colon},
      {"steps:\n  - expect: dirty: true\n", "2: " + colon},
      {"about: 小塚: x: y\nsteps: []\n", "1: " + colon},
      // One that the parser would end with the file, and one that it would end in another line.
      {"steps:\n  - tick\n  - pick: \"Mine", "3: " + quote},
      {"about: 'x\nsteps: []\n", "1: " + quote},
      {"about: \"x\nhost: {language: \"fr\"}\nsteps: []\n", "1: " + quote},
      {"about: \"two\n  lines\"\nsteps:\n  - expect: {project: \"a}\n  - tick\n", "4: " + quote},
      {"about: 'it's'\nsteps: []\n", "1: " + goesOn},
      {"steps:\n  - expect:\n      dirty: true\n        front: host\n", "4: " + key},
      {"steps:\n  - expect:\n      dirty: true\n     front: host\n", "4: " + depth},
      {"steps:\n  - expect:\n      errors: []\n        front: host\n", "4: " + depth},
      {"steps: [tick,\n  edit\n", "1: " + bracket},
      {"about: {a: b\nsteps: []\n\n", "1: " + bracket},
      {"about: *.aep\nsteps: []\n", "1: write a text that begins with '*' in quotes\n"},
      {"about: @x\nsteps: []\n", "1: write a text that begins with '@' in quotes\n"},
      {"about: > x\nsteps: []\n", "1: isn't YAML: unexpected character in block scalar\n"},
      {"steps: [tick]\n# more\n---\n\nsteps: [edit]\n", "3: " + second},
      {"---\nsteps: []\n---\n", "3: " + second},
      {"steps: []\n...\nsteps: []\n", "2: " + second},
  };
  for (const auto& [session, fault] : cases) {
    EXPECT_EQ(FaultsOf(session), "story.yaml:" + fault) << session;
  }
  for (const std::string session : {"---\nsteps: []\n...\n", "about: \"two\n  lines\"\nsteps: []",
                                    "files: {a: \"x: '\"}\nsteps: []"}) {
    EXPECT_EQ(Play(session).code, 0) << session;
  }
}

TEST(SessionFile, NamesTheLineAndTheKeyOfAFault) {
  const std::string below = "is a key of 'expect': indent it below an 'expect'\n";
  const std::string deeper =
      "is at the depth of the step 'expect': indent it further, or begin a step with '-'\n";
  const std::vector<std::pair<std::string, std::string>> cases{
      {"steps:\n  - expect:\n    dirty: true\n", "3: dirty: " + deeper},
      {"steps:\n  - tick\n  - dirty: true\n", "3: dirty: " + below},
      {"steps: [tick]\ndirty: true\n", "2: dirty: " + below},
      {"steps: [tick]\nexpect: {}\n", "2: expect: unknown key; known are "},
      {"steps: [expect: {stdout: [it is: 3]}]",
       "1: stdout: has to be a text, not a map: write a text that holds a ':' in quotes\n"},
      {"[]", "1: session: has to be a map"},
      {"about: x\n", "1: session: the key 'steps' is missing"},
      {"about: a\nabout: b\nsteps: []", "2: about: comes twice"},
      {"about: ${who}\nsteps: []", "1: about: there is no variable 'who'"},
      {"steps:\n  - tikc\n", "2: tikc: unknown step; known are "},
      {"steps: [save as: /a.aep]", "1: save as: has to stay in the session folder"},
      {"steps:\n  - edit\n  - start\n", "2: edit: comes before the host has started"},
      {"steps:\n  - quit\n  - tick\n", "3: tick: comes after the host has quit"},
      {"steps: [refuse: {suite: AEGP Proj Suite, version: 1}]", "1: refuse: the host has no such "},
      {"steps: [repeat: {times: 2, steps: [quit]}]", "1: quit: can't be repeated"},
      {"steps: [start, start]", "1: start: the host has started already"},
      {"steps: [fail: {function: sendEvent, times: 1, call: 1}]", "1: fail: takes one of 'times' "},
      {"steps: [tick: {seconds per tick: 1, ticks per second: 1}]", "1: tick: takes one of "},
      {"steps: [pause: 1 s]", "1: pause: has to be a time such as 200 ms, not '1 s'"},
      {"steps: [tick until: {stdout: [], at most: 1}]", "1: stdout: unknown key; known are "},
      {"steps: [expect: {files: {log: {lines: []}}}]",
       "1: lines: unknown key; known are has lines"},
      {"host: {window classes: {A: B}}\nsteps: []", "1: A: there is no window class 'B'"},
      {"environment: {A=B: c}\nsteps: []", "1: A=B: 'A=B' can't be the name of a variable"},
      {"files: {a: x}\nprojects: {./a: []}\nsteps: []", "1: a: the session has the file 'a' "},
      {"files: {journal: x}\nsteps: []", "1: journal: 'journal' is a name of the session folder's"},
      {"variants: []\nsteps: []", "1: variants: has to have a variant"},
      {"variants: [{name: a}, {name: a}]\nsteps: []", "1: variants: two variants have one name"},
      {"variants: [{name: a, x: ['${x}']}]\nsteps: ['${x}']",
       "1: steps: a variable stands for a list that holds itself"},
      {"variants: [{name: a, x: {k: '${x}'}}]\nsteps: [tick: '${x}']", "1: k: unknown key; known"},
      {"known issues: [{finding: crash, reason: x}]\nsteps: []",
       "1: finding: there is no finding 'crash' that can be a known issue"},
      {"files: {a/b: x, a: y}\nsteps: []", "1: a: the session has the file 'a/b' already"},
      {"framework: {missing export: Gone}\nsteps: []",
       "1: missing export: there is no without-Gone/Tamberlink.framework in "},
      {"processes: [x/y]\nsteps: []", "1: processes: there is no y in "},
      {"steps: [framework answers: [PluginIsEnabled: {count: 1}]]", "1: count: unknown key; known"},
      {"steps: [expect: {framework: [1 PluginIsEnabled: {shw: 1}]}]",
       "1: shw: PluginIsEnabled has no argument 'shw'"},
  };
  for (const auto& [session, fault] : cases) {
    EXPECT_THAT(FaultsOf(session), StartsWith("story.yaml:" + fault)) << session;
  }
  EXPECT_THAT(Play("vault: {}\nsteps: []").output,
              HasSubstr("story.yaml:1: vault: needs the option --font-manager"));
  EXPECT_THAT(Play("steps: []", "--font-manager /").output,
              StartsWith("--font-manager: there is no Tamberlink.framework in /"));
}

TEST(SessionFile, HasTheElementsOfAVariableInPlaceOfItAtAnyDepth) {
  const Played played = Play(
      "variants: [{name: a, none: [], some: [edit, tick], all: ['${none}', tick, '${some}']}]\n"
      "steps: ['${all}', '${none}', expect: {dirty: true, stdout: ['${none}']}]");
  EXPECT_EQ(played.code, 0) << played.output;
  EXPECT_THAT(played.output, HasSubstr("\n     2  session "));
}

TEST(SessionFile, HasAllItsFaultsReportedInTheOrderOfLines) {
  EXPECT_EQ(FaultsOf(R"(steps:
  - open: a.aep
  - tick: {count: 0, seconds per tick: -1}
  - tikc:
    extra: 1
  - repeat: {times: 1, steps: [edit: 1, save: 1]}
  - fail: {function: AEGP_Nothing, times: x}
  - expect: {dirty: maybe, front: [], findings: [none, crash]}
  - expect: {framework: [1, 2 Nothing]}
  - pick: ${item}
variants:
  - {name: a, item: []}
  - {name: b, item: Mine}
  - {item: c}
projects: {a.aep: Futura, ../b.aep: []}
host: {version: 1, language: xx}
settles: perhaps
vault: {Futura: never, Bodoni: ever}
about: ${nobody}
)"),
            R"(story.yaml:3: count: has to be a whole number from 1 to 1000000000, not '0'
story.yaml:3: seconds per tick: has to be a whole number from 0 to 1000000000, not '-1'
story.yaml:5: extra: is at the depth of the step 'tikc': indent it further, or begin a step with '-'
story.yaml:6: edit: takes no value
story.yaml:6: save: takes no value
story.yaml:7: function: the host has no 'AEGP_Nothing' that could fail
story.yaml:7: times: has to be a whole number from 1 to 1000000000, not 'x'
story.yaml:8: dirty: has to be true or false, not 'maybe'
story.yaml:8: findings: there is no finding 'crash' that a session can expect
story.yaml:8: findings: there is no finding 'none' that a session can expect
story.yaml:8: front: has to be a text, not a list
story.yaml:9: framework: '1' has to be a tick and an operation
story.yaml:9: framework: the framework has no operation 'Nothing'
story.yaml:12: pick: has to be a text, not a list
story.yaml:14: variants: a variant needs a name
story.yaml:15: ../b.aep: has to stay in the session folder
story.yaml:15: a.aep: has to be a list, not a text
story.yaml:16: language: has to be one of en, fr, de, es, it, pt, ja, not 'xx'
story.yaml:16: version: has to be a version such as 114.0, not '1'
story.yaml:17: settles: has to be true or false, not 'perhaps'
story.yaml:18: Bodoni: has to be automatic, choice or restricted
story.yaml:18: Futura: has to be automatic, choice or restricted
story.yaml:19: about: there is no variable 'nobody'
)");
}

}  // namespace
