#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "TemporaryFolder.h"

namespace {

using testing::AnyOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

struct Played {
  int code = -1;
  std::string output;
};

Played RunHost(const std::string& arguments) {
  const std::string command = std::string(AEGP_HOST) + " run " + arguments + " 2>&1";
  Played played;
  std::FILE* const pipe = popen(command.c_str(), "r");
  std::array<char, 4096> buffer;
  while (const size_t size = std::fread(buffer.data(), 1, buffer.size(), pipe)) {
    played.output.append(buffer.data(), size);
  }
  const int status = pclose(pipe);
  played.code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return played;
}

/// Plays the session with the test plug-in.
Played Play(const std::string& session, const std::string& options = "") {
  const TemporaryFolder folder;
  const std::string file = folder.Write("story.yaml", session).string();
  return RunHost("--plugin " TEST_PLUGIN " " + options + " " + file);
}

/// Returns a session in which the test plug-in shows the behaviour.
std::string Behaviour(const std::string& behaviour, const std::string& steps = "[tick]") {
  return "framework: none\nfiles: {behaviour: " + behaviour + "}\nsteps: " + steps + "\n";
}

TEST(Host, CatchesWhatAPluginDoesWrong) {
  const std::vector<std::pair<std::string, std::string>> cases{
      {"leak a suite", "AEGP Memory Suite 1 was acquired and not released, 1 time(s)"},
      {"release a suite twice", "AEGP Memory Suite 1 was released but not acquired"},
      {"leak a handle", "1 memory handle(s) left"},
      {"leak a lock", "1 lock(s) of memory handles left"},
      {"free a locked handle", "a handle was freed while it was locked"},
      {"free a handle twice", "AEGP_FreeMemHandle got a handle that doesn't exist (any more)"},
      {"unlock a handle", "a handle was unlocked that wasn't locked"},
      {"crash", "the process crashed: Aborted, in the step at "},
      {"end the process", "the process ended before its static objects did"},
      {"end the process with a code", "the process ended with code 3"},
      {"throw", "an exception left the plug-in's idle hook: std::runtime_error: boom"},
      {"throw an int", "an exception left the plug-in's idle hook: int 516"},
      {"fail", "the user saw an error that no step expects: idle hook 42"},
      {"report", "the user saw a report that no step expects: something is up"},
  };
  for (const auto& [behaviour, finding] : cases) {
    SCOPED_TRACE(behaviour);
    const Played played = Play(Behaviour(behaviour));
    EXPECT_EQ(played.code, 1);
    EXPECT_THAT(played.output, HasSubstr("\nfailed:\n"));
    EXPECT_THAT(played.output, HasSubstr(finding));
    EXPECT_THAT(played.output, EndsWith("\nresult: failed\n"));
  }
}

TEST(Host, LetsAPluginKeepSuitesUntilItsStaticObjectsAreDestroyed) {
  const Played played = Play(Behaviour("hold a suite to the end"));
  EXPECT_EQ(played.code, 0) << played.output;
  EXPECT_THAT(played.output, EndsWith("no handle and no lock is left\nresult: ok\n"));
}

TEST(Host, NoticesADialogThatNeverBegins) {
  const Played played =
      Play(Behaviour("keep dialogs from beginning", "[tick, dialog: Preferences]"));
  EXPECT_EQ(played.code, 1);
  EXPECT_THAT(played.output, HasSubstr("the dialog \"Preferences\" never began"));
}

TEST(Host, LeavesNothingBehindWhenInterrupted) {
  const TemporaryFolder folder;
  const std::string story = folder.Write("story.yaml", Behaviour("interrupt")).string();
  std::filesystem::create_directory(folder.path() / "tmp");
  setenv("TMPDIR", (folder.path() / "tmp").c_str(), 1);
  const Played played = RunHost("--plugin " TEST_PLUGIN " " + story + " " + story);
  EXPECT_EQ(played.code, 130);
  EXPECT_THAT(played.output, Not(AnyOf(HasSubstr("goodbye"), HasSubstr("result:"))));
  EXPECT_TRUE(std::filesystem::is_empty(folder.path() / "tmp"));
}

TEST(Host, BlamesNoPluginForItsOwnFaults) {
  for (const std::string function :
       {"AEGP_LockMemHandle", "AEGP_UnlockMemHandle", "AEGP_FreeMemHandle"}) {
    const Played played =
        Play(Behaviour("lock and unlock", "[fail: {function: " + function + "}, tick]"));
    EXPECT_EQ(played.code, 0) << played.output;
    EXPECT_THAT(played.output, HasSubstr(function + " fails with 1"));
  }
}

TEST(Host, ShowsAModuleItsOwnTime) {
  const Played played = Play(Behaviour("tell the time", R"(
  - wait: 5
  - tick: {count: 1, seconds per tick: 2}
  - expect: {stdout: [it is 1700000007]}
)"));
  EXPECT_EQ(played.code, 0) << played.output;
}

TEST(Host, KeepsPreferences) {
  const Played played =
      Play("host: {preferences: {Section: {old: there}}}\n" + Behaviour("keep a preference", R"(
  - expect: {preferences: {Section: {new: none, other: none}}}
  - tick
  - expect:
      preferences: {Section: {old: there, new: kept}}
      stdout: [old is there, new is kept, other is fallback]
)"));
  EXPECT_EQ(played.code, 0) << played.output;
}

TEST(Host, TellsOfFaultsAndAnswersThatNothingCameFor) {
  const Played played = Play(R"(
framework: none
steps:
  - fail: {function: AEGP_EnableCommand, times: 5}
  - fail: {function: AEGP_NewProject}
  - framework answers: [PluginIsEnabled: {result: 5}]
  - open menu
)");
  EXPECT_EQ(played.code, 1);
  EXPECT_THAT(played.output, HasSubstr("AEGP_EnableCommand wasn't called as often"));
  EXPECT_THAT(played.output, HasSubstr("AEGP_NewProject wasn't called as often"));
  EXPECT_THAT(played.output, HasSubstr("1 answer(s) of PluginIsEnabled were never asked for"));
}

TEST(Host, TakesPrintedTextIntoTheTimelineInOrder) {
  const Played played = Play(Behaviour("end no line", "[tick, quit]"));
  EXPECT_EQ(played.code, 0);
  EXPECT_THAT(
      played.output,
      HasSubstr("user       quits the host\n        plug-in    prints: no line endcommand 5\n"));
  EXPECT_THAT(played.output, HasSubstr("plug-in    prints: goodbye\n"));
}

TEST(Host, OffersCommandsOfItsOwnAndPluginsOnlyTheEnabled) {
  const Played played = Play(R"(
framework: none
steps:
  - expect: {menu enabled: []}
  - open menu
  - expect: {menu enabled: [Mine]}
  - pick: Mine
  - expect: {command handled: true, stdout: [command of mine, command 0]}
  - save as: projects/a.aep
  - expect: {stdout: [command 4, command 0], project: projects/a.aep}
  - fail: {function: AEGP_EnableCommand, times: 1}
  - pick: Mine
)");
  EXPECT_EQ(played.code, 1);
  EXPECT_THAT(played.output, HasSubstr("the menu item \"Mine\" is disabled"));
  EXPECT_THAT(played.output, Not(HasSubstr("NOT as expected")));
}

TEST(Host, RefusesTopPositionsInTheWindowMenu) {
  EXPECT_THAT(Play(Behaviour("insert at the top")).output,
              HasSubstr("inserts \"Top\" into menu 7, place 0: refused"));
}

TEST(Host, ShowsWhereAnExpectationFailed) {
  const Played played = Play(R"(
framework: none
projects:
  projects/a.aep: [Futura]
steps:
  - open by double click: projects/a.aep
  - expect:
      missing fonts: [Garamond]
      dialogs shown: [Resolve Fonts]
      framework: [1 PluginIsEnabled]
      project: none
)");
  EXPECT_EQ(played.code, 1);
  EXPECT_THAT(played.output, HasSubstr("story.yaml:8: missing fonts\n"
                                       "    expected: Garamond\n"
                                       "    found:    Futura\n"));
  EXPECT_THAT(played.output, HasSubstr("    - 1 PluginIsEnabled\n"));
  EXPECT_THAT(played.output, HasSubstr("    expected: none\n    found:    projects/a.aep\n"));
  EXPECT_THAT(played.output, HasSubstr("as expected: dialogs shown"));
}

TEST(Host, PlaysEachVariantAndIsQuietAboutThoseThatAreAsExpected) {
  const Played played = Play(R"(
variants:
  - {name: right, title: Preferences}
  - {name: wrong, title: Settings}
framework: none
steps:
  - dialog: Preferences
  - expect: {dialogs shown: ["${title}"]}
)",
                             "--quiet");
  EXPECT_EQ(played.code, 1);
  EXPECT_THAT(played.output, Not(HasSubstr("(right)")));
  EXPECT_THAT(played.output, HasSubstr("session: story (wrong)"));
  EXPECT_THAT(played.output, HasSubstr("    expected: Settings\n    found:    Preferences\n"));
  EXPECT_THAT(played.output, EndsWith("2 sessions, 1 failed\nresult: failed\n"));
}

TEST(Host, NamesFileLineAndKeyOfAFaultySession) {
  const std::vector<std::pair<std::string, std::string>> cases{
      {"framwork: none\nsteps: []", "story.yaml:1: framwork: unknown key"},
      {"about: x\n", "story.yaml:1: session: the key 'steps' is missing"},
      {"steps:\n  - tikc\n", "story.yaml:2: tikc: unknown step"},
      {"steps:\n  - tick: many\n", "story.yaml:2: tick: has to be a whole number"},
      {"steps:\n  - tick:\n      count: [1]\n", "story.yaml:3: count: has to be a text"},
      {"steps:\n  - open: a.aep\n", "story.yaml:2: open: there is no project 'a.aep'"},
      {"steps:\n  - edit\n  - start\n", "story.yaml:2: edit: comes before the host has started"},
      {"steps:\n  - quit\n  - tick\n", "story.yaml:3: tick: comes after the host has quit"},
      {"steps:\n  - expect: {dirt: true}\n", "story.yaml:2: dirt: unknown key"},
      {"steps:\n  - expect:\n      framework: [PluginIsEnabled]\n", "story.yaml:3: framework: "},
      {"steps:\n  - fail: {function: AEGP_Nothing}\n", "story.yaml:2: function: the host has no"},
      {"steps:\n  - refuse: {suite: AEGP Proj Suite, version: 1}\n", "story.yaml:2: refuse: "},
      {"host: {version: 114}\nsteps: []", "story.yaml:1: version: has to be a version"},
      {"host: {language: xx}\nsteps: []", "story.yaml:1: language: has to be one of"},
      {"files: {../a: x}\nsteps: []", "story.yaml:1: ../a: has to stay in the session folder"},
      {"about: a\nabout: b\nsteps: []", "story.yaml:2: about: comes twice"},
      {"about: ${who}\nsteps: []", "story.yaml:1: about: there is no variable 'who'"},
      {"variants: [{title: x}]\nsteps: []", "story.yaml:1: variants: a variant needs a name"},
      {"steps: [\n", "story.yaml:2: "},
      {"[]", "story.yaml:1: session: has to be a map"},
      {"steps: []", "story.yaml:1: framework: there is no Tamberlink.framework"},
  };
  for (const auto& [session, message] : cases) {
    SCOPED_TRACE(session);
    const Played played = Play(session);
    EXPECT_EQ(played.code, 2);
    EXPECT_THAT(played.output, HasSubstr(message));
  }
}

TEST(Host, SaysWhatIsWrongWithACommandLineOrAModule) {
  const TemporaryFolder folder;
  const std::string story = " " + folder.Write("story.yaml", Behaviour("crash", "[]")).string();
  const std::vector<std::tuple<std::string, int, std::string>> cases{
      {story, 2, "--plugin is required"},
      {"--plugin nowhere.so" + story, 2, "--plugin: File does not exist: nowhere.so"},
      {"--plugin " TEST_PLUGIN, 2, "SESSION is required"},
      {"--plugin " TEST_PLUGIN " nowhere.yaml", 2, "nowhere.yaml: can't be read"},
      {"--plugin" + story + story, 1, "the plug-in can't be loaded: "},
      {"--plugin " MODULE_WITHOUT_ENTRY + story, 1, "the plug-in exports no EntryPointFunc"},
  };
  for (const auto& [arguments, code, message] : cases) {
    SCOPED_TRACE(arguments);
    const Played played = RunHost(arguments);
    EXPECT_EQ(played.code, code);
    EXPECT_THAT(played.output, HasSubstr(message));
  }
}

}  // namespace
