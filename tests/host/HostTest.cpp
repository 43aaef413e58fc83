#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <malloc.h>
#include <signal.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "PlayHost.h"
#include "TemporaryFolder.h"

namespace {

using testing::AllOf;
using testing::AnyOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

// For a plug-in that hangs. Long enough for a busy machine to get there.
constexpr char kShort[] = "--timeout 2";

/// What the test plug-in does, and what the host finds.
struct Misbehaviour {
  std::string behaviour;
  std::vector<std::string> findings;
  std::string options;
};

std::ostream& operator<<(std::ostream& stream, const Misbehaviour& row) {
  return stream << row.behaviour;
}

class MisbehavingPlugin : public testing::TestWithParam<Misbehaviour> {};

TEST_P(MisbehavingPlugin, IsCaught) {
  // A sanitizer would report the crash in the host's place.
  setenv("ASAN_OPTIONS", "handle_segv=0", 1);
  const Played played = Play(Behaviour(GetParam().behaviour), GetParam().options);
  EXPECT_EQ(played.code, 1);
  EXPECT_THAT(played.output, HasSubstr("\nfailed:\n"));
  for (const std::string& finding : GetParam().findings) {
    EXPECT_THAT(played.output, HasSubstr(finding));
  }
  EXPECT_THAT(played.output, EndsWith("\nresult: failed\n"));
}

const std::vector<Misbehaviour> kMisbehaviours{
    {"leak a suite",
     {"suite-leaked: AEGP Memory Suite 1 is left, from AcquireSuite in the idle hook at tick 1"},
     {}},
    {"leak a suite and use it again",
     {"suite-leaked: AEGP Memory Suite 1 is left, from AcquireSuite in the idle hook at tick 1"},
     {}},
    {"release a suite twice",
     {"suite-released-too-often: ReleaseSuite: AEGP Memory Suite 1 isn't acquired; the one from "
      "AcquireSuite in the idle hook at tick 1 was released before"},
     {}},
    {"call a released suite",
     {"released-suite: AEGP_GetUniqueCommand: its suite isn't acquired\n"
      "    in the idle hook, tick 1, host call AEGP_GetUniqueCommand(pointer), step "},
     {}},
    {"call an unsupplied function of a released suite",
     {"released-suite: AEGP_GetMainHWND: its suite isn't acquired"},
     {}},
    {"leak a handle",
     {"handle-leaked: a memory handle is left, from AEGP_GetProjectPath in the idle hook"},
     {}},
    {"leak a lock", {"handle-leaked: a locked memory handle is left"}, {}},
    {"free a locked handle", {"locked-handle-freed: AEGP_FreeMemHandle: the handle is locked"}, {}},
    {"free a handle twice",
     {"unknown-handle: AEGP_FreeMemHandle: the handle was freed before; it is from "
      "AEGP_GetProjectPath in the idle hook at tick 1",
      "handle-leaked: a memory handle is left"},
     {}},
    {"unlock a handle", {"unlocked-too-often: AEGP_UnlockMemHandle: the handle isn't locked"}, {}},
    {"leak a block", {"block-leaked: a block is left, from AllocateBlock in the idle hook"}, {}},
    {"free a block twice",
     {"unknown-block: FreeBlock: the block was freed before; it is from AllocateBlock in the idle "
      "hook at tick 1",
      "block-leaked: a block is left"},
     {}},
    {"free a block that has moved",
     {"unknown-block: FreeBlock: the block was freed before; it is"},
     {}},
    {"pass what looks like a result",
     {"often: ReleaseSuite: suite\\nresult: ok 1 isn't acquired\n    in the idle hook, tick 1, "
      "host call ReleaseSuite(\"suite\\nresult: ok\", 1), step "},
     {}},
    {"pass a wild pointer", {"\n    tick 1, host call AEGP_ReportInfo(1, \", step "}, {}},
    {"pass null", {"null-argument: AEGP_ReportInfo: info_stringZ is null"}, {}},
    {"pass another id", {"wrong-plugin-id: AEGP_ReportInfo: the plug-in's id is 1, not 77"}, {}},
    {"use a closed project", {"stale-project: AEGP_GetProjectPath: the project was closed"}, {}},
    {"use no project", {"unknown-handle: AEGP_GetProjectPath: there is no such project"}, {}},
    {"call from a thread",
     {"wrong-thread: AcquireSuite of the basic suite: called from another thread\n"
      "    while the main thread was in the idle hook, tick 1\n    ",
      "libtest-plugin.so(+0x"},
     {}},
    {"call from two threads",
     {"wrong-thread: AcquireSuite of the basic suite: called from another thread\n",
      "2000 times, first at tick 1\n", "\n     1  user       quits the host\n"},
     {}},
    {"register late", {"late-hook: AEGP_RegisterIdleHook: the entry point has returned"}, {}},
    {"insert an unknown command", {"unknown-command: AEGP_InsertMenuCommand: "}, {}},
    {"insert into no menu", {"unknown-menu: AEGP_InsertMenuCommand: there is no menu 0"}, {}},
    {"keep an undo group", {"unbalanced-undo-group: an undo group is started and not ended"}, {}},
    {"end an undo group",
     {"unbalanced-undo-group: AEGP_EndUndoGroup: no undo group was started"},
     {}},
    {"crash",
     {"crash: the process crashed in the idle hook: Segmentation fault\n"
      "    tick 1, host call ReleaseSuite(\"AEGP Register Suite\", 6), step ",
      "libtest-plugin.so(+0x"},
     {}},
    {"crash after printing",
     {"plug-in    prints: last words\\x1b \\xc2\\x9b \u00e9 \uFFFD in file\n",
      "plug-in    writes to standard error: and more"},
     {}},
    {"crash after printing much",
     {"plug-in    prints: (37865 bytes are left out)\n        plug-in    prints: xxx",
      "x\n        plug-in    prints: the end\n"},
     {}},
    {"crash at exit", {"crash: the process crashed in the static destructor: Aborted\n"}, {}},
    {"report at exit", {"user-report: the user saw a report that no step expects: at exit"}, {}},
    {"acquire when finalised",
     {"suite-leaked: AEGP Memory Suite 1 is left, from AcquireSuite in the static destructor"},
     {}},
    {"pass null when finalised",
     {"null-argument: FreeBlock: block is null\n    in the static de"},
     {}},
    {"crash when finalised",
     {"crash: the process crashed in the static destructor: Aborted\n"},
     {}},
    {"hang when finalised", {"doesn't return within 2 s in the static destructor\n"}, kShort},
    {"exit when finalised",
     {"process-ended: the process ended in the static destructor with code"},
     {}},
    {"go on in a fork", {"process-ended: the process ended in the idle hook with code 0"}, {}},
    {"throw in a command",
     {"exception: an exception leaves the plug-in's command hook: std::"},
     {}},
    {"pick without end", {"nested-too-deep: AEGP_DoCommand: 100 calls of hooks are under way"}, {}},
    {"enable a removed item", {"unknown-command: AEGP_EnableCommand: no menu item has"}, {}},
    {"crash at load", {"crash: the process crashed in the static constructor: Aborted\n"}, {}},
    {"throw in a thread",
     {"uncaught exception: std::runtime_error: from a [thread]\\nof mine\n",
      "crash: the process crashed in another thread: Aborted\n"
      "    the main thread was in the idle hook, tick 1, host call "},
     {}},
    {"hang",
     {"timeout: the plug-in doesn't return within 2 s in the idle hook\n    tick 1, "},
     kShort},
    {"hang at load",
     {"timeout: the plug-in doesn't return within 2 s in the static constructor"},
     kShort},
    {"hang with a child",
     {"timeout: the plug-in doesn't return within 2 s in the idle hook"},
     kShort},
    {"exit",
     {"process-ended: the process ended in the idle hook with code 0\n    tick 1, ",
      ", 2 of 3 steps left"},
     {}},
    {"close all descriptors",
     {"process-ended: the process can't tell what came of the session: the plug-in has closed "},
     {}},
    {"exit in a thread",
     {"process-ended: the process ended in another thread with code 0\n"
      "    the main thread was in the idle hook, tick 1, host call "},
     {}},
    {"end the process", {"process-ended: the process ended in the idle hook with code 0"}, {}},
    {"end the process with a code",
     {"process-ended: the process ended in the idle hook with code 3"},
     {}},
    {"leave a child behind", {"process-ended: the process ended in the idle hook with code 0"}, {}},
    {"throw",
     {"exception: an exception leaves the plug-in's idle hook: std::runtime_error: boom"},
     {}},
    {"throw an int", {"exception: an exception leaves the plug-in's idle hook: int 516"}, {}},
    {"fail", {"hook-error: the user saw an error that no step expects: idle hook 42"}, {}},
    {"report", {"user-report: the user saw a report that no step expects: something is up"}, {}},
};

INSTANTIATE_TEST_SUITE_P(All, MisbehavingPlugin, testing::ValuesIn(kMisbehaviours),
                         [](const auto& row) {
                           std::string name = row.param.behaviour;
                           std::replace(name.begin(), name.end(), ' ', '_');
                           return name;
                         });

TEST(Host, LetsTheSessionOrTheUserAcceptAFinding) {
  EXPECT_EQ(Play(Behaviour("pass null", "[tick, expect: {findings: [null-argument]}]")).code, 0);
  EXPECT_EQ(Play(Behaviour("pass null"), "--allow null-argument").code, 0);
  EXPECT_EQ(Play(Behaviour("pass null"), "--allow crash").code, 1);
  EXPECT_EQ(Play(Behaviour("pass null often"), "--allow null-argument").code, 1);
  const Played cut = Play(Behaviour("throw"), "--allow exception");
  EXPECT_EQ(cut.code, 1);
  EXPECT_THAT(cut.output, HasSubstr("\nnot every step was played\n"));
  const Played warned = Play(Behaviour("enable outside a hook"));
  EXPECT_EQ(warned.code, 0);
  EXPECT_THAT(warned.output, HasSubstr("\nwarnings:\n  enabled-outside-hook: "));
  EXPECT_EQ(Play(Behaviour("enable outside a hook"), "--strict").code, 1);
}

TEST(Host, WarnsOfWhatIsOddAndNoMistakeYet) {
  setenv("ASAN_OPTIONS", "detect_leaks=0", 1);
  const Played late = Play(Behaviour("report at exit"));
  EXPECT_THAT(late.output, HasSubstr("called-too-late: AEGP_ReportInfo: the host has shut down"));
  EXPECT_THAT(Play(Behaviour("hold a stream")).output,
              HasSubstr("thread-left: a thread that the plug-in has started still runs"));
  EXPECT_THAT(Play("environment: {REGISTERS_TWICE: yes}\nsteps: [tick]").output,
              HasSubstr("registered-twice: AEGP_RegisterIdleHook: the hook is registered already"));
  // Gives back only what it holds.
  EXPECT_THAT(Play(Behaviour("hold a suite to the end")).output, Not(HasSubstr("warnings:")));
}

TEST(Host, NoticesAWritePastTheEndOfAHandleOrABlock) {
  for (const auto& [behaviour, finding] : std::vector<std::pair<std::string, std::string>>{
           {"write past a handle",
            "overrun: AEGP_FreeMemHandle: the plug-in has written past the "
            "end of the handle"},
           {"write past a block",
            "overrun: FreeBlock: the plug-in has written past the end of the "
            "block"}}) {
    const Played played = Play(Behaviour(behaviour));
    EXPECT_EQ(played.code, 1);
    // A sanitizer ends the process at the write.
    EXPECT_THAT(played.output, AnyOf(HasSubstr(finding), HasSubstr("use-after-poison")));
  }
}

TEST(Host, TellsNothingOfTheCrashOfAChild) {
  const Played played = Play(Behaviour("crash in a child"));
  EXPECT_THAT(played.output, AllOf(HasSubstr("exception: an exception leaves the plug-in's"),
                                   Not(HasSubstr("libc.so")), Not(HasSubstr("crash:"))));
}

TEST(Host, LetsAPluginKeepSuitesUntilItsModuleIsFinalised) {
  for (const std::string behaviour : {"hold a suite to the end", "hold a suite until finalised"}) {
    const Played played = Play(Behaviour(behaviour));
    EXPECT_EQ(played.code, 0) << played.output;
    EXPECT_THAT(played.output, EndsWith("no handle and no lock is left\nresult: ok\n"));
  }
}

TEST(Host, NoticesADialogThatNeverBegins) {
  const Played played =
      Play(Behaviour("keep dialogs from beginning", "[tick, dialog: Preferences]"));
  EXPECT_EQ(played.code, 1);
  EXPECT_THAT(played.output, HasSubstr("dialog-never-began: the dialog \"Preferences\""));
}

TEST(Host, EndsASessionThatHoldsTheHostItselfUp) {
  const Played played = Play(
      "files: {behaviour: put a pipe in the place of the project}\n"
      "projects: {projects/a.aep: []}\n"
      "steps: [open by double click: projects/a.aep, tick, edit, save]\n",
      kShort);
  EXPECT_EQ(played.code, 1);
  EXPECT_THAT(played.output, HasSubstr("timeout: the host itself is held up for 2 s\n"));
  EXPECT_EQ(Play(Behaviour("hold a stream")).code, 0);
}

TEST(Host, LeavesNothingBehindWhenInterrupted) {
  const TemporaryFolder folder;
  const std::string variants = "variants: [{name: a}, {name: b}]\n";
  const std::string story = Word(folder.Write("story.yaml", variants + Behaviour("interrupt")));
  std::filesystem::create_directory(folder.path() / "tmp");
  setenv("TMPDIR", (folder.path() / "tmp").c_str(), 1);
  const Played played = RunHost("--plugin " TEST_PLUGIN " " + story);
  EXPECT_EQ(played.code, 130);
  EXPECT_THAT(played.output, Not(AnyOf(HasSubstr("goodbye"), HasSubstr("result:"))));
  EXPECT_TRUE(std::filesystem::is_empty(folder.path() / "tmp"));
}

TEST(Host, EndsTheProcessesThatAPluginLeavesBehind) {
  const Played played = Play(Behaviour("leave a daemon behind"));
  EXPECT_EQ(played.code, 0) << played.output;
  const std::string before = "leaves process ";
  const size_t place = played.output.find(before);
  ASSERT_NE(place, std::string::npos) << played.output;
  EXPECT_EQ(kill(std::stoi(played.output.substr(place + before.size())), 0), -1);
  EXPECT_EQ(errno, ESRCH);
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
steps:
  - fail: {function: AEGP_EnableCommand, times: 5}
  - fail: {function: AEGP_NewProject}
  - framework answers: [PluginIsEnabled: {result: 5}]
  - open menu
)",
                             kWithFontManager);
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

TEST(Host, KeepsTheOrderOfTheTwoOutputs) {
  const Played played = Play(Behaviour("print to both outputs in turn"));
  // What goes past the streams keeps only the order of its own output.
  EXPECT_THAT(played.output, HasSubstr("plug-in    prints: one\n"
                                       "        plug-in    writes to standard error: two\n"
                                       "        plug-in    prints: three\n"
                                       "        plug-in    writes to standard error: four\n"
                                       "        plug-in    prints: five\n"
                                       "        plug-in    prints: by the descriptor\n"
                                       "        plug-in    writes to standard error: six\n"));
}

TEST(Host, KeepsNoDescriptorOfASessionThatWaitsToBeShown) {
  const TemporaryFolder folder;
  const std::string trace = (folder.path() / "trace").string();
  ASSERT_EQ(mkfifo(trace.c_str(), 0600), 0);
  // The first session goes on when the last has been played.
  std::string variants = "variants:\n";
  for (int i = 0; i < 40; ++i) variants += "  - {name: " + std::to_string(i) + ", do: \"\"}\n";
  variants += "  - {name: last, do: leave a trace}\n";
  const std::string environment = "environment: {TRACE: " + trace + "}\n";
  const std::string files =
      Word(folder.Write("first.yaml", environment + Behaviour("wait for the trace"))) + " " +
      Word(folder.Write("then.yaml", variants + environment + Behaviour("\"${do}\"")));
  const Played played = RunCommand(
      "ulimit -n 40; " AEGP_HOST " run --quiet --jobs 2 --plugin " TEST_PLUGIN " " + files);
  EXPECT_EQ(played.code, 0) << played.output;
}

TEST(Host, OffersCommandsOfItsOwnAndPluginsOnlyTheEnabled) {
  const Played played = Play(R"(
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
              HasSubstr("inserts \"Top\" into the Window menu, at the top: refused"));
}

TEST(Host, ShowsWhereAnExpectationFailed) {
  const Played played = Play(R"(
projects:
  projects/a.aep: [Futura]
steps:
  - open by double click: projects/a.aep
  - expect:
      missing fonts: [Garamond]
      dialogs shown: [Resolve Fonts]
      framework: [1 PluginIsEnabled]
      project: none
)",
                             kWithFontManager);
  EXPECT_EQ(played.code, 1);
  EXPECT_THAT(played.output, HasSubstr("story.yaml:7: missing fonts\n"
                                       "    expected: Garamond\n"
                                       "    found:    Futura\n"));
  EXPECT_THAT(played.output, HasSubstr("    - 1 PluginIsEnabled\n"));
  EXPECT_THAT(played.output, HasSubstr("    expected: none\n    found:    projects/a.aep\n"));
  EXPECT_THAT(played.output, HasSubstr("as expected: dialogs shown"));
}

TEST(Host, SaysWhatThePluginHoldsMoreOf) {
  const std::string steps = "[start: , expect: {growth: none}, tick, expect: {growth: none}]";
  const Played played = Play(Behaviour("hold more of everything", steps));
  EXPECT_EQ(played.code, 1);
  EXPECT_THAT(played.output, HasSubstr("        session    as expected: growth\n"
                                       "     1  session    NOT as expected: growth\n"));
  EXPECT_THAT(played.output, AllOf(HasSubstr("open descriptors: "), HasSubstr("files: "),
                                   HasSubstr("memory handles and blocks: 0 before, 2 now"),
                                   HasSubstr("acquired suites: 0 before, 1 now")));
  // A sanitizer has a heap of its own.
  if (mallinfo2().uordblks > 0) {
    EXPECT_THAT(played.output, HasSubstr("bytes of memory: "));
  }
}

TEST(Host, CountsLargeMemoryAsThePluginsAndNotWhatItKeepsItself) {
  const std::string steps = "[start: , expect: {growth: none}, tick, expect: {growth: none}]";
  // A sanitizer has a heap of its own.
  if (mallinfo2().uordblks > 0) {
    EXPECT_THAT(Play(Behaviour("hold a megabyte more", steps)).output,
                HasSubstr("bytes of memory: "));
  }
  const Played played = Play(Behaviour("free a megabyte and close projects", steps));
  EXPECT_EQ(played.code, 0) << played.output;
}

TEST(Host, PlaysEachVariantAndIsQuietAboutThoseThatAreAsExpected) {
  const Played played = Play(R"(
variants:
  - {name: right, title: Preferences}
  - {name: wrong, title: Settings}
steps:
  - dialog: Preferences
  - expect: {dialogs shown: ["${title}"]}
)",
                             "--quiet");
  EXPECT_EQ(played.code, 1);
  EXPECT_THAT(played.output, Not(HasSubstr("(right)")));
  EXPECT_THAT(played.output, HasSubstr("session: story (wrong)"));
  EXPECT_THAT(played.output, HasSubstr("    expected: Settings\n    found:    Preferences\n"));
  EXPECT_THAT(played.output, EndsWith("2 sessions, 1 failed\n  story (wrong)\nresult: failed\n"));
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
      {"steps:\n  - fail: {function: AEGP_Nothing}\n", "story.yaml:2: function: the host has no"},
      {"steps:\n  - refuse: {suite: AEGP Proj Suite, version: 1}\n", "story.yaml:2: refuse: "},
      {"host: {version: 114}\nsteps: []", "story.yaml:1: version: has to be a version"},
      {"host: {language: xx}\nsteps: []", "story.yaml:1: language: has to be one of"},
      {"files: {../a: x}\nsteps: []", "story.yaml:1: ../a: has to stay in the session folder"},
      {"files: {a: x}\nprojects: {./a: []}\nsteps: []",
       "story.yaml:1: a: the session has the file 'a' already"},
      {"files: {a/b: x, a: y}\nsteps: []",
       "story.yaml:1: a: the session has the file 'a/b' already"},
      {"about: a\nabout: b\nsteps: []", "story.yaml:2: about: comes twice"},
      {"about: ${who}\nsteps: []", "story.yaml:1: about: there is no variable 'who'"},
      {"variants: [{title: x}]\nsteps: []", "story.yaml:1: variants: a variant needs a name"},
      {"[]", "story.yaml:1: session: has to be a map"},
      {"steps:\n  - save as: /a.aep\n", "story.yaml:2: save as: has to stay in the session folder"},
      {"steps: [expect: {findings: [crash]}]", "there is no finding 'crash' that a session can"},
      {"vault: {}\nsteps: []", "story.yaml:1: vault: needs the option --font-manager"},
  };
  for (const auto& [session, message] : cases) {
    SCOPED_TRACE(session);
    const Played played = Play(session);
    EXPECT_EQ(played.code, 2);
    EXPECT_THAT(played.output, HasSubstr(message));
  }
}

TEST(Host, NamesTheFaultsInWhatASessionSaysOfTheFontManager) {
  const std::vector<std::pair<std::string, std::string>> cases{
      {"framework: {missing export: Gone}\nsteps: []", ": the framework has no operation 'Gone'"},
      {"processes: [x/y]\nsteps: []", "story.yaml:1: processes: there is no y in "},
      {"steps: [framework answers: [PluginIsEnabled: {count: 1}]]", "known are call, result\n"},
      {"vault: {Futura: never}\nsteps: []", "story.yaml:1: Futura: has to be automatic, choice or"},
      {"steps:\n  - expect:\n      framework: [PluginIsEnabled]\n", "story.yaml:3: framework: "},
      {"steps:\n  - expect: {framework: [1 PlugIsEnabled]}\n", "no operation 'PlugIsEnabled'"},
      {"steps:\n  - expect: {framework: [1 PluginIsEnabled: {shw: 1}]}\n",
       "story.yaml:2: shw: PluginIsEnabled has no argument 'shw'"},
  };
  for (const auto& [session, message] : cases) {
    SCOPED_TRACE(session);
    const Played played = Play(session, kWithFontManager);
    EXPECT_EQ(played.code, 2);
    EXPECT_THAT(played.output, HasSubstr(message));
  }
}

TEST(Host, ReportsTheFaultsOfAllFilesBeforeItPlaysAny) {
  const TemporaryFolder folder;
  const std::string good = Word(folder.Write("good.yaml", "steps: []"));
  const std::string one = Word(folder.Write("one.yaml", "steps: [tikc]"));
  const std::string two = Word(folder.Write("two.yaml", "steps: {}"));
  const Played played = RunHost("--plugin " TEST_PLUGIN " " + good + " " + one + " " + two);
  EXPECT_EQ(played.code, 2);
  EXPECT_THAT(played.output, HasSubstr("one.yaml:1: tikc: unknown step"));
  EXPECT_THAT(played.output, HasSubstr("two.yaml:1: steps: has to be a list, not a map"));
  EXPECT_THAT(played.output, Not(HasSubstr("session:")));
}

TEST(Host, PlaysWhatIsSelectedInOrder) {
  const TemporaryFolder folder;
  const std::string files =
      " " + Word(folder.Write("a/story.yaml", "variants: [{name: x}, {name: y}]\nsteps: []")) +
      " " + Word(folder.Write("b/story.yaml", Behaviour("fail"))) + " " +
      Word(folder.Write("b/last.yaml", "steps: []"));
  const Played all = RunHost("--quiet --jobs 3 --plugin " TEST_PLUGIN + files);
  EXPECT_EQ(all.code, 1);
  EXPECT_THAT(all.output, EndsWith("4 sessions, 1 failed\n  " + folder.path().string() +
                                   "/b/story\nresult: failed\n"));
  EXPECT_THAT(RunHost("--fail-fast --plugin " TEST_PLUGIN + files).output,
              Not(HasSubstr("session: last")));
  const Played some = RunHost("--filter 'a/.*x' --keep --plugin " TEST_PLUGIN + files);
  EXPECT_EQ(some.code, 0);
  const size_t kept = some.output.find("kept: ") + 6;
  const std::filesystem::path place(some.output.substr(kept, some.output.find('\n', kept) - kept));
  EXPECT_TRUE(std::filesystem::exists(place / "active-fonts")) << some.output;
  std::filesystem::remove_all(place);
}

TEST(Host, ValidatesAPluginWithoutAnySessionFile) {
  const Played good = RunHost(TEST_PLUGIN, "validate");
  EXPECT_EQ(good.code, 0);
  EXPECT_THAT(good.output, EndsWith(" sessions, 0 failed\nresult: ok\n"));
  EXPECT_THAT(good.output,
              AllOf(HasSubstr("registers hooks:       Command, Death, Idle, UpdateMenu\n"),
                    HasSubstr("inserts menu items:    \"Mine\"\n"),
                    HasSubstr("acquires suites:       AEGP Command Suite 1, AEGP Register"),
                    Not(HasSubstr("misses suites"))));
  setenv("BEHAVIOUR", "enable outside a hook", 1);
  const Played odd = RunHost(TEST_PLUGIN, "validate");
  EXPECT_EQ(odd.code, 0);
  EXPECT_THAT(odd.output, AllOf(StartsWith("warning: enabled-outside-hook: "),
                                HasSubstr("\n    in 15 of 16 sessions: dialogs (en), ")));
  EXPECT_EQ(RunHost("--strict " TEST_PLUGIN, "validate").code, 1);
  setenv("BEHAVIOUR", "leak a block", 1);
  const Played bad = RunHost(TEST_PLUGIN, "validate");
  EXPECT_EQ(bad.code, 1);
  EXPECT_THAT(bad.output, HasSubstr("error: block-leaked: "));
  EXPECT_THAT(bad.output, EndsWith("\nresult: failed\n"));
  EXPECT_EQ(RunHost("--allow block-leaked " TEST_PLUGIN, "validate").code, 0);
}

TEST(Host, SaysWhichSuitesAndFunctionsItLacks) {
  setenv("BEHAVIOUR", "ask for what is missing", 1);
  EXPECT_THAT(RunHost(TEST_PLUGIN, "validate").output,
              AllOf(HasSubstr("misses suites:         AEGP Item Suite 13, AEGP Proj Suite 6\n"),
                    HasSubstr("calls unsupplied:      AEGP_GetMainHWND\n")));
  const Played played = Play("steps: [tick, expect: {not supplied: [AEGP_GetMainHWND]}]");
  EXPECT_EQ(played.code, 0);
  EXPECT_THAT(played.output,
              AllOf(HasSubstr("asks for AEGP Item Suite 13, which this host doesn't supply\n"),
                    HasSubstr("asks for AEGP Proj Suite 6: this host has version 9\n"),
                    HasSubstr("calls AEGP_GetMainHWND, which this host doesn't supply\n")));
}

TEST(Host, HasTheWindowsAndTitlesThatASessionDeclares) {
  const Played played = Play(R"(
host:
  titles: {open project: Pick one, missing fonts: Gone}
  window classes: {MyPanel: NSPanel, MySheet: MyPanel}
projects:
  projects/a.aep: [Futura]
steps:
  - open: projects/a.aep
  - dialog: {title: Mine, class: MySheet}
  - expect: {dialogs shown: [Pick one, Gone, Mine], project: "${session}/projects/a.aep"}
)");
  EXPECT_EQ(played.code, 0) << played.output;
  EXPECT_THAT(Play("host: {window classes: {A: B}}\nsteps: []").output,
              HasSubstr("story.yaml:1: A: there is no window class 'B'"));
}

TEST(Host, ComparesWhatAPluginWrote) {
  const Played played = Play(Behaviour("write files", R"(
  - wait: 5
  - tick: 2
  - expect:
      files: {written: "in ${session}", missing: none}
      stdout: ["${session}/written, 1700000005", "${session}/new/folder/written, 1700000005",
        "${session}/dated, 1234567890"]
      stderr: [to the error stream]
)"));
  EXPECT_EQ(played.code, 0) << played.output;
}

TEST(Host, FindsLinesOfAFileInTheirOrder) {
  const std::string files =
      "files: {log: \"one\\ntwo at 0x1f of 3\\n${session}/three\\nfour\\n\"}\n";
  const std::vector<std::pair<std::string, std::string>> cases{
      {"[one, four]", ""},
      {"[two at ... of 3, \"${session}/three\"]", ""},
      {"[...wo..., thr...]", ""},
      {"[]", ""},
      {"[two, four]",
       "    expected: log: two\n    found:    one\n              two at 0x1f of 3\n"},
      {"[four, one]", "    expected: log: one\n    found:    no more lines\n"},
      {"[one, one]", "expected: log: one\n    found:    two at 0x1f of 3\n"},
      {"[two at ... of 4]", "expected: log: two at ... of 4\n"},
      {"[...two of 3]", "expected: log: ...two of 3\n"},
  };
  const auto expecting = [&](const std::string& lines) {
    return Play(files + "steps: [expect: {files: {log: {has lines: " + lines + "}}}]");
  };
  for (const auto& [lines, difference] : cases) {
    SCOPED_TRACE(lines);
    const Played played = expecting(lines);
    EXPECT_EQ(played.code, difference.empty() ? 0 : 1);
    EXPECT_THAT(played.output, HasSubstr(difference));
  }
  EXPECT_THAT(Play("steps: [expect: {files: {log: {lines: []}}}]").output,
              HasSubstr("unknown key"));
}

TEST(Host, GivesTheProcessTheVariablesOfTheSession) {
  setenv("BEHAVIOUR", "throw", 1);
  const Played played = Play(R"(
environment: {BEHAVIOUR: leave a trace, TRACE: "${session}/trace"}
steps:
  - tick
  - expect: {files: {trace: left}}
)");
  EXPECT_EQ(played.code, 0) << played.output;
  EXPECT_THAT(Play("environment: {A=B: c}\nsteps: []").output,
              HasSubstr("story.yaml:1: A=B: 'A=B' can't be the name of a variable"));
}

TEST(Host, ComparesReportsAsTheyAreAndShowsThemEscaped) {
  const auto expecting = [](const std::string& report) {
    return Play(Behaviour("report two lines", "[tick, expect: {reports: [" + report + "]}]"));
  };
  EXPECT_EQ(expecting("\"one\\ntwo\"").code, 0);
  EXPECT_THAT(expecting("'one\\ntwo'").output,
              HasSubstr("    expected: one\\\\ntwo\n    found:    one\\ntwo\n"));
  EXPECT_THAT(Play(Behaviour("report two lines")).output, HasSubstr("expects: one\\ntwo\n"));
}

TEST(Host, WaitsForThePluginsThreads) {
  const Played played = Play(Behaviour("work in a thread", R"(
  - tick
  - pause: 1 ms
  - tick until: {files: {done: waited}, at most: 1000000000}
)"));
  EXPECT_EQ(played.code, 0) << played.output;
  EXPECT_THAT(played.output, HasSubstr("as expected: tick until\n"));
  EXPECT_THAT(Play("steps: [tick until: {files: {done: waited}, at most: 3}]").output,
              AllOf(HasSubstr("     3  session    NOT as expected: tick until\n"),
                    HasSubstr("    found:    done: none\n")));
  EXPECT_THAT(Play("steps: [pause: 1 s]").output,
              HasSubstr("pause: has to be a time such as 200 ms, not '1 s'"));
  EXPECT_THAT(Play("steps: [tick until: {stdout: [], at most: 1}]").output,
              HasSubstr("story.yaml:1: stdout: "));
}

TEST(Host, StaysInItsFolderWhereverThePluginGoes) {
  const Played played = Play(Behaviour("leave the folder", R"(
  - tick
  - save as: projects/a.aep
  - expect: {files: {projects/a.aep: ""}, project: projects/a.aep}
)"));
  EXPECT_EQ(played.code, 0) << played.output;
}

TEST(Host, SaysWhatIsWrongWithACommandLineOrAModule) {
  const TemporaryFolder folder;
  const std::string story = " " + Word(folder.Write("story.yaml", Behaviour("crash", "[]")));
  const std::vector<std::tuple<std::string, int, std::string>> cases{
      {story, 2, "--plugin is required"},
      {"--plugin nowhere.so" + story, 2, "--plugin: File does not exist: nowhere.so"},
      {"--plugin " TEST_PLUGIN, 2, "SESSION is required"},
      {"--plugin " TEST_PLUGIN " nowhere.yaml", 2, "nowhere.yaml: can't be read"},
      {"--plugin" + story + story, 2, "story.yaml can't be loaded: "},
      {"--plugin " TEST_PLUGIN + story + story, 2, "story.yaml: a session of "},
      {"--plugin " MODULE_WITHOUT_ENTRY + story, 2, " exports no EntryPointFunc"},
      {"--plugin " TEST_PLUGIN " --entry Other" + story, 2, " exports no Other"},
      {"--plugin " TEST_PLUGIN " --filter nobody" + story, 2,
       "no session matches --filter nobody\n"},
  };
  for (const auto& [arguments, code, message] : cases) {
    SCOPED_TRACE(arguments);
    const Played played = RunHost(arguments);
    EXPECT_EQ(played.code, code);
    EXPECT_THAT(played.output, HasSubstr(message));
  }
}

}  // namespace
