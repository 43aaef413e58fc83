#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "PlayHost.h"
#include "TemporaryFolder.h"

namespace {

using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

constexpr char kPlugin[] = "--plugin " TEST_PLUGIN " ";
// The test plug-in uses suites and handles that it didn't get. A sanitizer ends the process then.
const std::string kCareless =
    "--allow crash --allow process-ended --allow null-argument --allow unknown-command";

Played Sweep(const std::string& session, const std::string& options = "") {
  return Play(session, options, "sweep");
}

TEST(Sweep, NamesTheCallWhoseFailureIsMishandledAndRepeatsIt) {
  const TemporaryFolder folder;
  const std::string save = Word(folder.path() / "saved");
  const Played swept =
      Sweep(Behaviour("get the path; read it carelessly", "[wait: 1, start: , tick]"),
            kCareless + " --save " + save);
  EXPECT_EQ(swept.code, 1);
  EXPECT_THAT(swept.output, HasSubstr("story: call 1 of AEGP_LockMemHandle fails with 24301\n"
                                      "  handle-leaked: a memory handle is left, from "
                                      "AEGP_GetProjectPath in the idle hook at tick 1\n"));
  EXPECT_THAT(swept.output, HasSubstr(", 1 failed\nresult: failed\n"));
  const Played repeated =
      RunHost(kPlugin + Word(folder.path() /
                             "saved/1-story--call-1-of-AEGP-LockMemHandle-fails-with-24301.yaml"));
  EXPECT_EQ(repeated.code, 1);
  EXPECT_THAT(repeated.output, AllOf(HasSubstr("AEGP_LockMemHandle fails with 24301"),
                                     HasSubstr("handle-leaked: a memory handle is left")));
}

TEST(Sweep, PlaysNothingIfItCannotSave) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("file", "").string();
  const Played played = Sweep("steps: [tick]", " --save " + Word(file + "/saved"));
  EXPECT_EQ(played.code, 2);
  EXPECT_THAT(played.output, HasSubstr("--save: can't make " + file + "/saved: Not a directory"));
}

TEST(Sweep, SaysWhereATrialWentWrongAndLetsWarningsPass) {
  const Played swept = Sweep(Behaviour("pass null", "[tick, tick]"), "--allow process-ended");
  EXPECT_THAT(
      swept.output,
      ContainsRegex("null-argument: AEGP_ReportInfo: info_stringZ is null\n    in the idle hook, "
                    "tick 1, host call AEGP_ReportInfo.1, null., step .*/story.yaml:2\n"));
  // It goes wrong without a fault.
  EXPECT_THAT(swept.output, HasSubstr(" 0 trials, 1 failed\n"));
  const Played warned = Sweep(Behaviour("enable"), kCareless);
  EXPECT_EQ(warned.code, 0) << warned.output;
  EXPECT_EQ(Sweep(Behaviour("enable"), kCareless + " --strict").code, 1);
}

TEST(Sweep, CountsTheCallsThatComeWhileASessionSettles) {
  const Played swept = Sweep(Behaviour("need the memory suite at death", "[tick, tick]"),
                             std::string("--allow null-argument ") + kWithFontManager);
  EXPECT_THAT(swept.output, AllOf(HasSubstr("crash: the process crashed in the death hook"),
                                  HasSubstr("\n17 calls in 1 session, 17 trials")));
}

TEST(Sweep, TakesAnErrorThatAFailingCallCausesAsRight) {
  // The test plug-in returns what `AEGP_InsertMenuCommand` answers from its entry point.
  const Played swept = Sweep("steps: [tick]\n", kCareless);
  EXPECT_EQ(swept.code, 0) << swept.output;
  const Played run = Play("steps: [fail: {function: AEGP_InsertMenuCommand}, start]\n");
  EXPECT_THAT(run.output, HasSubstr("hook-error: the user saw an error"));
}

TEST(Sweep, HasTheFrameworkFail) {
  const Played swept = Sweep(Behaviour("ask the framework"), kCareless + " " + kWithFontManager);
  EXPECT_THAT(swept.output, HasSubstr("framework answers: [PluginIsEnabled: {call: 1, result: "));
  EXPECT_THAT(
      swept.output,
      HasSubstr("user-report: the user saw a report that no step expects: the framework fails"));
}

TEST(Sweep, SaysThatACallNeverCameAgain) {
  const TemporaryFolder folder;
  setenv("TRACE", (folder.path() / "trace").c_str(), 1);
  const Played swept = Sweep(Behaviour("close the project once and for all"), kCareless);
  EXPECT_THAT(swept.output,
              HasSubstr("story: call 1 of AEGP_NewProject fails with 24301\n"
                        "  setup: AEGP_NewProject wasn't called as often as it was to fail"));
  EXPECT_THAT(swept.output, HasSubstr("call: 1}\n  - start\n  - tick\n"));
}

TEST(Sweep, IsAnErrorIfNothingCanGoWrong) {
  const Played swept = RunHost(
      "--plugin " TYPELARK " " + std::string(kWithFontManager) + " " SESSIONS "/no-framework.yaml",
      "sweep");
  EXPECT_EQ(swept.code, 2);
  EXPECT_THAT(swept.output, HasSubstr("the sessions have no call that could go wrong"));
}

TEST(Random, ShortensASessionThatFailsAndTheSeedRepeatsIt) {
  const std::string arguments = "BEHAVIOUR='close the project' " AEGP_HOST " random " +
                                std::string(kPlugin) + "--seed 4 --count 6";
  const Played played = RunCommand(arguments);
  EXPECT_EQ(played.code, 1);
  EXPECT_THAT(played.output, HasSubstr("unsaved-work-lost: the plug-in closes"));
  // The user edits, and the plug-in's first tick closes.
  EXPECT_THAT(played.output,
              AllOf(HasSubstr("steps:\n  - edit\n  - tick: 1\n"), Not(HasSubstr("vault:"))));
  EXPECT_EQ(RunCommand(arguments).output, played.output);
}

TEST(TolerantSession, AsksAtItsEndWhatBecameOfAnActivation) {
  const std::string closes =
      "have Garamond active; call: InitializeTamberlinkInterface; call: PluginIsEnabled, "
      "enabled=true; call: HandleOpenExistingDocument, path=projects/a.aep; close the project; ";
  const std::string closed = "project-left-closed: the plug-in closed projects/a.aep";
  const std::string opensAnother = "open by double click: projects/b.aep, tick";
  const std::string fails = "fail: {function: AEGP_EnableCommand, times: 1}, open menu, tick: 3";
  // What the plug-in does from its first tick on, the steps, and the finding.
  const std::vector<std::tuple<std::string, std::string, std::string>> cases{
      {closes, "tick", closed + "\n"},
      {closes + "open it again", opensAnother, "the plug-in closed projects/b.aep"},
      {closes + "call: PluginIsEnabled, enabled=false", "tick", closed + ", and was disabled when"},
      {"close the project", "tick", closed + ", whose path was new\n"},
      {"tick; tick; close the project", fails, closed + ", whose path was new\n"},
      {closes + "open it again", "tick",
       "font-still-missing: Garamond is active, and projects/a.aep"},
      {closes, "tick", "activation-never-ends: the plug-in doesn't see a dialog"},
      {closes + "call: HandleSaveDocument", "tick",
       "never-ends: the framework isn't told of a saved"},
      {"call: InvokeResolveDialog, list=(not terminated), size=131072, list=, size=0", "tick",
       "bad-argument: InvokeResolveDialog: list has no terminator"},
      {"call: GetIDForDocument, path=a, size=257, id=(not terminated), size=257", "tick",
       "bad-argument: GetIDForDocument: size is 257, of a buffer of 256 bytes"},
  };
  const auto play = [](const std::string& behaviour, const std::string& steps) {
    return Play("tolerant: true\nprojects: {projects/a.aep: [Garamond], projects/b.aep: []}\n" +
                    Behaviour(behaviour, "[open by double click: projects/a.aep, " + steps + "]"),
                kWithFontManager);
  };
  for (const auto& [behaviour, steps, finding] : cases) {
    EXPECT_THAT(play(behaviour, steps).output, HasSubstr(finding)) << behaviour << steps;
  }
}

TEST(TolerantSession, ExcusesAnErrorOnlyInTheVisitInWhichItWasAnswered) {
  const Played played = Play(
      "tolerant: true\n" +
      Behaviour("fail",
                "[fail: {function: AEGP_EnableCommand, result: 42, times: 1}, open menu, tick]"));
  EXPECT_EQ(played.code, 1);
  EXPECT_THAT(played.output, AllOf(HasSubstr("the update-menu hook returned 42"),
                                   HasSubstr("step expects: idle hook 42"),
                                   Not(HasSubstr("step expects: update-menu hook 42"))));
}

TEST(TolerantSession, SkipsWhatCannotBePlayedAndComparesNothing) {
  const Played played = Play(
      "tolerant: true\n"
      "steps: [save, repeat: {times: 3, steps: [pick: Nothing, tick]}, expect: {dirty: true}]\n");
  EXPECT_EQ(played.code, 0) << played.output;
  EXPECT_THAT(played.output, AllOf(HasSubstr("skips the step: a project without a path"),
                                   HasSubstr("skips the step: no menu has an item"),
                                   HasSubstr("\n     3  user ")));
}

}  // namespace
