#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <malloc.h>
#include <signal.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <string>
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

/// What the test plug-in does, and what the host says of it.
struct Misbehaviour {
  std::string behaviour;
  std::vector<std::string> findings;
  std::string options{};
};

std::ostream& operator<<(std::ostream& stream, const Misbehaviour& row) {
  return stream << row.behaviour;
}

class MisbehavingPlugin : public testing::TestWithParam<Misbehaviour> {};

TEST_P(MisbehavingPlugin, IsDescribed) {
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

// Those whose description is more than the names that sessions/misuses.yaml has.
const std::vector<Misbehaviour> kMisbehaviours{
    {"hold more; acquire; get the path; allocate",
     {"suite-leaked: AEGP Memory Suite 1 is left, from AcquireSuite in the idle hook at tick 1\n",
      "handle-leaked: a memory handle is left, from AEGP_GetProjectPath in the idle hook at tick 1",
      "block-leaked: a block is left, from AllocateBlock in the idle hook at tick 1\n"}},
    {"acquire; release; release",
     {"suite-released-too-often: ReleaseSuite: AEGP Memory Suite 1 isn't acquired; the one from "
      "AcquireSuite in the idle hook at tick 1 was released before"}},
    {"call a released suite",
     {"released-suite: AEGP_GetUniqueCommand: its suite isn't acquired\n"
      "    in the idle hook, tick 1, host call AEGP_GetUniqueCommand(pointer), step "}},
    {"call an unsupplied function of a released suite",
     {"released-suite: AEGP_GetMainHWND: its suite isn't acquired",
      "not-supplied: AEGP_GetMainHWND"}},
    {"acquire when finalised",
     {"suite-leaked: AEGP Memory Suite 1 is left, from AcquireSuite in the static destructor",
      "called-too-late: AcquireSuite: the host has shut down"}},
    {"start an undo group when finalised",
     {"unbalanced-undo-group: an undo group is started and not ended\n    in the static "
      "destructor"}},
    {"get the path; free; get it again; free",
     {"unknown-handle: AEGP_FreeMemHandle: the handle was freed before; it is from "
      "AEGP_GetProjectPath in the idle hook at tick 1",
      "handle-leaked: a memory handle is left"}},
    {"allocate; free the block; allocate another; free the block",
     {"unknown-block: FreeBlock: the block was freed before; it is from AllocateBlock in the idle "
      "hook at tick 1",
      "block-leaked: a block is left"}},
    {"pass what looks like a result",
     {"often: ReleaseSuite: suite\\nresult: ok 1 isn't acquired\n    in the idle hook, tick 1, "
      "host call ReleaseSuite(\"suite\\nresult: ok\", 1), step "}},
    {"pass a wild pointer", {"\n    tick 1, host call AEGP_ReportInfo(1, \", step "}},
    {"open half a pair",
     {"plug-in    asks for a project whose path isn't UTF-16\n",
      "hook-error: the user saw an error that no step expects: idle hook 1"}},
    {"tell the time; pass null",
     {"1700000000\n        host       finds null-argument: AEGP_ReportInfo: info_stringZ is "
      "null\n"}},
    {"fail", {"hook-error: the user saw an error that no step expects: idle hook 42"}},
    {"report at exit",
     {"user-report: the user saw a report that no step expects: at exit",
      "called-too-late: AEGP_ReportInfo: the host has shut down\n    in the static destructor"}},
    {"throw", {"exception: an exception leaves the plug-in's idle hook: std::runtime_error: boom"}},
    {"throw an int", {"exception: an exception leaves the plug-in's idle hook: int 516"}},
    {"throw in commands; pick",
     {"exception: an exception leaves the plug-in's command hook: std::"}},
    // The command, and the two of the quit, nest again each time.
    {"pick within each command; pick",
     {"nested-too-deep: AEGP_DoCommand: 100 calls of hooks are under way, each within the one "
      "before\n",
      "3 times, first at tick 1\n"}},
    {"throw in a thread",
     {"uncaught exception: std::runtime_error: from a [thread]\\nof mine\n",
      "crash: the process crashed in another thread: Aborted\n"
      "    the main thread was in the idle hook, tick 1, host call "}},
    {"call from two threads",
     {"wrong-thread: AcquireSuite of the basic suite: called from another thread\n"
      "    while the main thread was in the idle hook, tick 1\n    ",
      "libtest-plugin.so(+0x", "2000 times, first at tick 1\n",
      "\n     1  user       quits the host\n"}},
    {"print last words; crash",
     {"plug-in    prints: last words\\x1b \\x9b \u00e9 \uFFFD in file\n",
      "plug-in    writes to standard error: and more",
      "crash: the process crashed in the idle hook: Segmentation fault\n"
      "    tick 1, host call ReleaseSuite(\"AEGP Register Suite\", 6), step ",
      "libtest-plugin.so(+0x"}},
    {"print much; crash",
     {"plug-in    prints: (37865 bytes are left out)\n        plug-in    prints: xxx",
      "x\n        plug-in    prints: the end\n"}},
    {"overflow the stack",
     {"crash: the process crashed in the idle hook: Segmentation fault\n",
      "libtest-plugin.so(+0x"}},
    {"write without end",
     {"crash: the process crashed in the idle hook: File size limit exceeded\n"}},
    {"crash at exit", {"crash: the process crashed in the static destructor: Aborted\n"}},
    {"crash at load", {"crash: the process crashed in the static constructor: Aborted\n"}},
    {"fork; hang in the child; hang",
     {"timeout: the plug-in doesn't return within 2 s in the idle hook\n    tick 1, "},
     kShort},
    {"hang at load",
     {"timeout: the plug-in doesn't return within 2 s in the static constructor"},
     kShort},
    {"ignore the signal to end; hang when finalised",
     {"doesn't return within 2 s in the static destructor\n"},
     kShort},
    {"exit",
     {"process-ended: the process ended in the idle hook with code 0\n    tick 1, ",
      "story.yaml:2 (2 of 3)\n"}},
    {"exit in a thread",
     {"process-ended: the process ended in another thread with code 0\n"
      "    the main thread was in the idle hook, tick 1, host call "}},
    {"exit when finalised",
     {"process-ended: the process ended in the static destructor with code"}},
    {"end the process", {"process-ended: the process ended in the idle hook with code 3"}},
    {"fork; end the parent", {"process-ended: the process ended in the idle hook with code 0"}},
    {"close all descriptors",
     {"process-ended: the process can't tell what came of the session: the plug-in has closed "}},
};

INSTANTIATE_TEST_SUITE_P(All, MisbehavingPlugin, testing::ValuesIn(kMisbehaviours),
                         [](const auto& row) {
                           std::string name = row.param.behaviour;
                           std::erase(name, ';');
                           std::replace(name.begin(), name.end(), ' ', '_');
                           return name;
                         });

TEST(Host, LetsTheSessionOrTheUserAcceptAFinding) {
  EXPECT_EQ(Play(Behaviour("pass null", "[tick, expect: {findings: [null-argument]}]")).code, 0);
  EXPECT_EQ(Play(Behaviour("pass null"), "--allow null-argument").code, 0);
  const TemporaryFolder folder;
  const std::string known =
      "--known-issues " +
      Word(folder.Write("known.yaml",
                        "known issues: [{finding: null-argument, reason: it is known}]\n"));
  EXPECT_THAT(
      Play(Behaviour("pass null"), known).output,
      AllOf(HasSubstr("known issue null-argument: it is known\n"), EndsWith("result: ok\n")));
  EXPECT_EQ(Play("steps: [tick]", known).code, 0);
  // A call with a mistake counts, so the second one fails, and nothing is reported.
  EXPECT_EQ(Play(Behaviour("pass null; report", R"(
  - fail: {function: AEGP_ReportInfo, call: 2}
  - tick
  - expect: {findings: [null-argument]}
)"))
                .code,
            0);
  const Played cut = Play(Behaviour("throw"), "--allow exception");
  EXPECT_EQ(cut.code, 1);
  EXPECT_THAT(cut.output, HasSubstr("\nnot every step was played\n"));
  const Played warned = Play(Behaviour("enable"));
  EXPECT_EQ(warned.code, 0);
  EXPECT_THAT(warned.output, HasSubstr("\nwarnings:\n  enabled-outside-hook: "));
  EXPECT_EQ(Play(Behaviour("enable"), "--strict").code, 1);
}

TEST(Host, NoticesAWritePastTheEndOfAHandleOrABlock) {
  for (const auto& [behaviour, finding] : std::vector<std::pair<std::string, std::string>>{
           {"get the path; write past the handle; free",
            "AEGP_FreeMemHandle: the plug-in has written past the end of"},
           {"allocate; write past the block; free the block",
            "FreeBlock: the plug-in has written past the end of the block"},
           {"get the path; write past the handle",
            "the plug-in has written past the end of a memory handle"},
           {"allocate; write past the block", "the plug-in has written past the end of a block"},
       }) {
    const Played played = Play(Behaviour(behaviour));
    EXPECT_EQ(played.code, 1);
    // A sanitizer ends the process at the write.
    EXPECT_THAT(played.output,
                AnyOf(HasSubstr("overrun: " + finding), HasSubstr("use-after-poison")));
  }
}

TEST(Host, TellsNothingOfTheCrashOfAChild) {
  const Played played =
      Play(Behaviour("fork; throw in a thread of the child; wait for the child; end the process"));
  EXPECT_THAT(played.output,
              AllOf(HasSubstr("the process ended in the idle hook with code 3\n"),
                    Not(HasSubstr("from the child")), Not(HasSubstr("libtest-plugin.so("))));
}

TEST(Host, EndsASessionThatHoldsTheHostItselfUp) {
  const Played played = Play(
      "files: {behaviour: put a pipe in the place of the project}\n"
      "projects: {projects/a.aep: []}\n"
      "steps: [open by double click: projects/a.aep, tick, edit, save]\n",
      kShort);
  EXPECT_EQ(played.code, 1);
  EXPECT_THAT(played.output, HasSubstr("timeout: the host itself is held up for 2 s\n"));
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

TEST(Host, SaysWhatOfASessionCannotBePlayedOrWasNeverUsed) {
  const std::vector<std::pair<std::string, std::string>> cases{
      {"save", "a project without a path can't be saved in place"},
      {"pick: Nothing", "no menu has an item \"Nothing\""},
      {"fail: {function: AEGP_EnableCommand, times: 1}, pick: Mine",
       "the menu item \"Mine\" is disabled"},
      {"save as: a.aep, remove: a.aep, open: a.aep",
       "setup: the session can't go on: there is no project 'a.aep'"},
      {"fail: {function: AEGP_EnableCommand, times: 5}, open menu",
       "setup: AEGP_EnableCommand wasn't called as often as it was to fail"},
      {"fail: {function: AEGP_NewProject}", "setup: AEGP_NewProject wasn't called as often"},
      {"framework answers: [PluginIsEnabled: {result: 5}]",
       "setup: 1 answer(s) of PluginIsEnabled were never asked for"},
  };
  for (const auto& [steps, finding] : cases) {
    SCOPED_TRACE(steps);
    const Played played = Play("steps: [" + steps + "]\n", kWithFontManager);
    EXPECT_EQ(played.code, 1);
    EXPECT_THAT(played.output, HasSubstr(finding));
  }
}

TEST(Host, TakesPrintedTextIntoTheTimelineInOrder) {
  const Played played = Play(Behaviour("end no line; end no line at exit", "[tick, quit]"));
  EXPECT_EQ(played.code, 0);
  EXPECT_THAT(
      played.output,
      HasSubstr("user       quits the host\n        plug-in    prints: no line endcommand 5\n"));
  EXPECT_THAT(played.output, HasSubstr("plug-in    prints: goodbye\n"));
  EXPECT_THAT(played.output, HasSubstr("plug-in    prints: that's all\n"));
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
      Word(folder.Write("then.yaml", variants + environment + Behaviour("${do}")));
  const Played played = RunCommand(
      "ulimit -n 40; " AEGP_HOST " run --quiet --jobs 2 --plugin " TEST_PLUGIN " " + files);
  EXPECT_EQ(played.code, 0) << played.output;
}

TEST(Host, ShowsWhereAndHowTheCallsOfTheFrameworkDiffer) {
  const Played played =
      Play(Behaviour("call: GetMenus; call: PluginIsEnabled, enabled=true",
                     "[tick, expect: {framework: [1 GetMenus, 1 PluginIsEnabled: {enabled: false}, "
                     "1 HandleCloseDocument]}]"),
           kWithFontManager);
  EXPECT_EQ(played.code, 1);
  EXPECT_THAT(played.output, HasSubstr("story.yaml:2: framework\n"
                                       "    (- expected, + found)\n"
                                       "      1 GetMenus\n"
                                       "    - 1 PluginIsEnabled  enabled=false\n"
                                       "    + 1 PluginIsEnabled  enabled=true\n"
                                       "    - 1 HandleCloseDocument\n"));
}

TEST(Host, ShowsInTheTimeline) {
  const std::vector<std::pair<std::string, std::string>> cases{
      {Behaviour("read"), "plug-in    prints: nothing to read\n"},
      {Behaviour("insert at the top"),
       "plug-in    inserts \"Top\" into the Window menu, at the top: refused\n"},
      {"steps: [expect: {dirty: false, project: none}, expect: {front: host}]",
       "session    as expected: dirty, project\n        session    as expected: front\n"},
      {"projects: {a.aep: [a, b, c, d, e, f, g, h, i]}\n"
       "steps: [open by double click: a.aep, expect: {missing fonts: [a, b, c, d, e, f, g, x, i]}]",
       "9 and 9 elements)\n    - 8 x\n    + 8 h\nresult: failed"},
  };
  for (const auto& [session, text] : cases) EXPECT_THAT(Play(session).output, HasSubstr(text));
}

TEST(Host, SaysWhatThePluginHoldsMoreOf) {
  const std::string steps = "[start: , expect: {growth: none}, tick, expect: {growth: none}]";
  const Played played = Play(Behaviour("hold more; acquire; get the path; allocate", steps));
  EXPECT_EQ(played.code, 1);
  EXPECT_THAT(played.output, HasSubstr("        session    as expected: growth\n"
                                       "     1  session    NOT as expected: growth\n"));
  EXPECT_THAT(played.output, AllOf(HasSubstr("open descriptors: "), HasSubstr("files: "),
                                   HasSubstr("memory handles and blocks: 0 before, 2 now"),
                                   HasSubstr("acquired suites: 0 before, 1 now")));
  // A sanitizer has a heap of its own.
  if (mallinfo2().uordblks == 0) return;
  EXPECT_THAT(played.output, HasSubstr("bytes of memory: "));
  // Outside of the heap.
  EXPECT_THAT(Play(Behaviour("hold a megabyte more", steps)).output,
              HasSubstr("bytes of memory: "));
}

TEST(Host, PlaysEachVariantAndIsQuietAboutThoseThatAreAsExpected) {
  const Played played = Play(
      "variants: [{name: right, title: Preferences}, {name: wrong, title: Settings}]\n"
      "steps: [dialog: Preferences, expect: {dialogs shown: [\"${title}\"]}]",
      "--quiet");
  EXPECT_EQ(played.code, 1);
  EXPECT_THAT(played.output, Not(HasSubstr("(right)")));
  EXPECT_THAT(played.output, HasSubstr("session: story (wrong)"));
  EXPECT_THAT(played.output, HasSubstr("    expected: Settings\n    found:    Preferences\n"));
  EXPECT_THAT(played.output, EndsWith("2 sessions, 1 failed\n  story (wrong)\nresult: failed\n"));
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
  const auto validate = [](const std::string& behaviour, const std::string& options = "") {
    setenv("BEHAVIOUR", behaviour.c_str(), 1);
    return RunHost("--filter 'idle|quit' " + options + " " TEST_PLUGIN, "validate");
  };
  const Played odd = validate("enable");
  EXPECT_EQ(odd.code, 0);
  EXPECT_THAT(odd.output, AllOf(StartsWith("warning: enabled-outside-hook: "),
                                HasSubstr("\n    in 2 of 3 sessions: idle, quit (at once)\n")));
  EXPECT_EQ(validate("enable", "--strict").code, 1);
  // Nobody expects the reports here, so they count only if warnings do.
  EXPECT_EQ(validate("report").code, 0);
  const Played strict = validate("report; report two lines", "--strict");
  EXPECT_EQ(strict.code, 1);
  EXPECT_THAT(strict.output,
              AllOf(HasSubstr("expects: something is up"), HasSubstr("expects: one")));
  const Played bad = validate("pass null");
  EXPECT_EQ(bad.code, 1);
  EXPECT_THAT(bad.output, HasSubstr("error: null-argument: "));
  EXPECT_THAT(bad.output, EndsWith("\nresult: failed\n"));
  EXPECT_EQ(validate("pass null", "--allow null-argument").code, 0);
}

TEST(Host, SaysWhichSuitesAndFunctionsItLacks) {
  setenv("BEHAVIOUR", "ask for what is missing", 1);
  EXPECT_THAT(RunHost("--filter quit " TEST_PLUGIN, "validate").output,
              AllOf(HasSubstr("misses suites:         AEGP Item Suite 13, AEGP Proj Suite 6, AEGP "
                              "Utility Suite 9\n"),
                    HasSubstr("error: not-supplied: AEGP_GetMainHWND was called"),
                    HasSubstr("calls unsupplied:      AEGP_GetMainHWND\n")));
  const Played played =
      Play("steps: [tick, expect: {not supplied: [AEGP_GetMainHWND, AEGP_GetMainHWND]}]");
  EXPECT_EQ(played.code, 0);
  // Each once, though the plug-in asks for it twice.
  EXPECT_THAT(
      played.output,
      HasSubstr("     1  plug-in    asks for AEGP Item Suite 13, which this host doesn't supply\n"
                "        plug-in    asks for AEGP Proj Suite 6: this host has version 9\n"
                "        plug-in    asks for AEGP Utility Suite 9: this host has version 7 and 13\n"
                "        plug-in    calls AEGP_GetMainHWND, which this host doesn't supply\n"
                "        session "));
}

TEST(Host, FindsLinesOfAFileInTheirOrder) {
  const std::string before =
      "files: {log: \"one\\ntwo at 0x1f of 3\\n${session}/three\\nfour\\n\"}\n"
      "steps: [expect: {files: {log: {has lines: ";
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
  for (const auto& [lines, difference] : cases) {
    SCOPED_TRACE(lines);
    std::string session = before;
    const Played played = Play(session.append(lines).append("}}}]"));
    EXPECT_EQ(played.code, difference.empty() ? 0 : 1);
    EXPECT_THAT(played.output, HasSubstr(difference));
  }
}

TEST(Host, ComparesReportsAsTheyAreAndShowsThemEscaped) {
  const auto expecting = [](const std::string& report) {
    return Play(Behaviour("report two lines", "[tick, expect: {reports: [" + report + "]}]"));
  };
  EXPECT_EQ(expecting("\"one\\ntwo\"").code, 0);
  EXPECT_THAT(expecting("'one\\ntwo'").output,
              HasSubstr("    expected: one\\\\ntwo\n    found:    one\\ntwo\n"));
}

TEST(Host, FindsThePluginAndTheFontManagerFromWhereItIsCalled) {
  const TemporaryFolder folder;
  const std::string story = Word(folder.Write("story.yaml", Behaviour("ask the framework")));
  const Played played = RunCommand("cd / && " AEGP_HOST " run --plugin ." TEST_PLUGIN
                                   " --font-manager ." FONT_MANAGER " " +
                                   story);
  EXPECT_EQ(played.code, 0) << played.output;
}

TEST(Host, SaysWhatIsWrongWithACommandLineOrAModule) {
  const TemporaryFolder folder;
  const std::string story = " " + Word(folder.Write("story.yaml", Behaviour("crash", "[]")));
  const std::vector<std::pair<std::string, std::string>> cases{
      {story, "--plugin is required"},
      {"--plugin nowhere.so" + story, "--plugin: File does not exist: nowhere.so"},
      {"--plugin " TEST_PLUGIN, "SESSION is required"},
      {"--plugin " TEST_PLUGIN " nowhere.yaml", "nowhere.yaml: can't be read"},
      {"--plugin" + story + story, "story.yaml can't be loaded: "},
      {"--plugin " TEST_PLUGIN + story + story, "story.yaml: a session of "},
      {"--plugin " MODULE_WITHOUT_ENTRY + story, " exports no EntryPointFunc"},
      {"--plugin " TEST_PLUGIN " --entry Other" + story, " exports no Other"},
      {"--plugin " TEST_PLUGIN " --filter nobody" + story, "no session matches --filter nobody\n"},
  };
  for (const auto& [arguments, message] : cases) {
    SCOPED_TRACE(arguments);
    const Played played = RunHost(arguments);
    EXPECT_EQ(played.code, 2);
    EXPECT_THAT(played.output, HasSubstr(message));
  }
}

}  // namespace
