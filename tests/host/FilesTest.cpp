#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <pugixml.hpp>
#include <string>
#include <utility>
#include <vector>

#include "PlayHost.h"
#include "TemporaryFolder.h"

namespace {

using Json = nlohmann::json;
using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::Pair;
using testing::StartsWith;

std::string Read(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

/// A run of a session, with the files about it.
struct Recorded {
  explicit Recorded(const std::string& session, const std::string& options = "") {
    const std::string story = Word(folder.Write("story.yaml", session));
    played =
        RunHost("--plugin " TEST_PLUGIN " " + options + " --json " + Word(path("json")) +
                " --html " + Word(path("html")) + " --junit " + Word(path("junit")) + " " + story);
  }

  std::string path(const std::string& name) const { return (folder.path() / name).string(); }

  std::vector<Json> objects() const {
    std::vector<Json> objects;
    std::ifstream lines(path("json"));
    for (std::string line; std::getline(lines, line);) objects.push_back(Json::parse(line));
    return objects;
  }

  std::vector<Json> objects(const std::string& kind) const {
    std::vector<Json> some = objects();
    std::erase_if(some, [&](const Json& object) { return object.at("kind") != kind; });
    return some;
  }

  TemporaryFolder folder;
  Played played;
};

TEST(Files, JsonSaysOfEachEntryWhereItComesFrom) {
  const Recorded run(R"(about: Shows it.
steps:
  - start
  - tick: {count: 2, seconds per tick: 3}
  - edit
  - save as: projects/a.aep
  - expect: {project: none, dirty: false}
)");
  const std::string story = run.path("story.yaml");
  const std::vector<Json> objects = run.objects();
  ASSERT_GT(objects.size(), 4U);
  EXPECT_EQ(objects[0].at("kind"), "format");
  EXPECT_EQ(objects[0].at("format"), 2);
  EXPECT_EQ(objects[1], Json::parse(R"({"kind":"session","session":"story","file":")" + story +
                                    R"(","about":"Shows it.","steps":6})"));
  const std::vector<std::string> expected{
      R"({"kind":"entry","session":"story","step":1,"place":"STORY:3","tick":0,"time":1700000000,
          "actor":"plug-in","hook":"entry point",
          "text":"inserts \"Mine\" into the Window menu, sorted","call":"AEGP_InsertMenuCommand",
          "arguments":[{"name":"1","value":"10001"},{"name":"2","value":"Mine"},
                       {"name":"3","value":"7"},{"name":"4","value":"-2"}]})",
      R"({"kind":"state","session":"story","step":3,"place":"STORY:5","tick":2,"time":1700000006,
          "name":"dirty","value":"true"})",
      R"({"kind":"entry","session":"story","step":4,"place":"STORY:6","tick":2,"time":1700000006,
          "actor":"plug-in","hook":"command hook","text":"prints: command 4"})",
      R"({"kind":"state","session":"story","step":4,"place":"STORY:6","tick":2,"time":1700000006,
          "name":"project","value":"projects/a.aep"})",
      R"({"kind":"expectation","session":"story","step":5,"place":"STORY:7","tick":2,
          "time":1700000006,"actor":"session","text":"NOT as expected: project","name":"project",
          "met":false,"where":"STORY:7","difference":"    expected: none\n    found:    projects/a.aep"})",
      R"({"kind":"expectation","session":"story","step":5,"place":"STORY:7","tick":2,
          "time":1700000006,"actor":"session","text":"as expected: dirty","name":"dirty",
          "met":true,"where":"STORY:7"})",
      R"({"kind":"finding","session":"story","step":5,"place":"STORY:7","tick":2,
          "time":1700000006,"actor":"session","name":"expectation","level":"error",
          "text":"STORY:7: project\n    expected: none\n    found:    projects/a.aep"})",
      R"({"kind":"result","session":"story","result":"failed","complete":true})",
  };
  for (std::string text : expected) {
    for (size_t at = 0; (at = text.find("STORY")) != std::string::npos;) text.replace(at, 5, story);
    EXPECT_THAT(objects, testing::Contains(Json::parse(text)));
  }
  EXPECT_EQ(objects.back().at("kind"), "result");
}

TEST(Files, JsonSaysOfEachFindingWhereItComesFrom) {
  setenv("ASAN_OPTIONS", "handle_segv=0", 1);
  // By behaviour, what the head has besides what all have.
  const std::vector<std::pair<std::string, std::string>> cases{
      {"pass another id",
       R"("name":"wrong-plugin-id","call":"AEGP_ReportInfo",
          "arguments":[{"name":"1","value":"77"},{"name":"2","value":"who is this"}])"},
      {"fail", R"("name":"hook-error")"},
      {"start an undo group", R"("name":"unbalanced-undo-group")"},
      {"crash", R"("name":"crash")"},
      {"pass a wild pointer", R"("name":"crash","call":"AEGP_ReportInfo")"},
      {"have a thread crash within a call", R"("name":"crash")"},
      {"hang", R"("name":"timeout")"},
      {"call from two threads", R"("name":"wrong-thread")"},
  };
  for (const auto& [behaviour, head] : cases) {
    SCOPED_TRACE(behaviour);
    // The plug-in takes up the behaviour in its first tick.
    const Recorded run(R"(files: {behaviour: )" + behaviour + R"(}
steps:
  - start
  - wait: 5
  - tick
  - edit
)",
                       behaviour == "hang" ? "--timeout 2" : "");
    std::vector<Json> findings = run.objects("finding");
    ASSERT_FALSE(findings.empty()) << run.played.output;
    Json finding = findings.front();
    finding.erase("level");
    finding.erase("text");
    EXPECT_EQ(finding, Json::parse(R"({"kind":"finding","session":"story","step":3,"place":")" +
                                   run.path("story.yaml") +
                                   R"(:5","tick":1,"time":1700000005,"actor":"plug-in",
                                   "hook":"idle hook",)" +
                                   head + "}"));
  }
}

TEST(Files, JsonTellsHowFarAnActivationIs) {
  const TemporaryFolder folder;
  const std::string file = (folder.path() / "json").string();
  const Played played =
      RunHost("--plugin " TYPELARK " " + std::string(kWithFontManager) + " --filter open --json " +
              Word(file) + " " SESSIONS "/start-during-activation.yaml");
  ASSERT_EQ(played.code, 0) << played.output;
  std::vector<std::pair<int, std::string>> steps;
  std::ifstream lines(file);
  for (std::string line; std::getline(lines, line);) {
    const Json object = Json::parse(line);
    if (object.value("name", "") != "activation") continue;
    steps.emplace_back(object.at("tick"), object.at("value"));
  }
  EXPECT_THAT(steps, ElementsAre(Pair(0, "0"), Pair(2, "1"), Pair(4, "3"), Pair(6, "0"),
                                 Pair(6, "1"), Pair(8, "3"), Pair(30, "0")));
}

TEST(Files, EveryHookAndDialogThatBeginsEnds) {
  setenv("ASAN_OPTIONS", "handle_segv=0", 1);
  for (const std::string& session :
       {std::string("steps: [tick, dialog: Preferences, pick: Mine]"),
        Behaviour("print last words; crash"), Behaviour("throw in commands; pick"),
        Behaviour("exit"),
        Behaviour("keep dialogs from beginning", "[tick, dialog: Preferences]")}) {
    SCOPED_TRACE(session);
    const Recorded run(session);
    std::vector<std::string> running;
    for (const Json& object : run.objects()) {
      if (object.at("kind") == "begin") running.push_back(object.at("name"));
      if (object.at("kind") == "entry" && object.contains("hook")) {
        ASSERT_FALSE(running.empty()) << object;
        EXPECT_EQ(running.back(), object.at("hook"));
      }
      if (object.at("kind") != "end") continue;
      ASSERT_FALSE(running.empty()) << object;
      EXPECT_EQ(running.back(), object.at("name"));
      running.pop_back();
    }
    EXPECT_THAT(running, ElementsAre());
  }
}

TEST(Files, JUnitHoldsTheTimelineOfAFailureWhateverThePluginPrints) {
  const Recorded run("about: \"odd \\e\"\n" +
                     Behaviour("print odd bytes; report; report odd bytes"));
  const std::string xml = Read(run.path("junit"));
  pugi::xml_document document;
  ASSERT_TRUE(document.load_string(xml.c_str()));
  const pugi::xml_node suite = document.child("testsuite");
  EXPECT_EQ(suite.attribute("tests").as_int(), 1);
  EXPECT_EQ(suite.attribute("failures").as_int(), 1);
  const pugi::xml_node test = suite.child("testcase");
  EXPECT_EQ(test.attribute("name").value(), std::string("story"));
  EXPECT_THAT(test.attribute("classname").value(), EndsWith("/story.yaml"));
  EXPECT_EQ(test.child("failure").attribute("message").value(), std::string("user-report"));
  EXPECT_THAT(
      test.child("failure").text().get(),
      AllOf(HasSubstr("\nodd \\x1b\n"), HasSubstr("plug-in    prints: \\x1b \uFFFD \uFFFD <&>\n"),
            HasSubstr("a report that no step expects: \uFFFD\n")));
  EXPECT_THAT(xml, AllOf(Not(HasSubstr("\x1b")), Not(HasSubstr("&#27;")), Not(HasSubstr("\xff")),
                         Not(HasSubstr("\uFFFE"))));
}

TEST(Files, APageHoldsTheObjectsWhateverTheySay) {
  const Recorded run("about: </script><!--<script>\nsteps: [tick]");
  const std::string page = Read(run.path("html"));
  const std::string head = "<script type=\"application/json\" id=\"events\">";
  const size_t begin = page.find(head) + head.size();
  const size_t end = page.find("</script>", begin);
  ASSERT_NE(end, std::string::npos);
  EXPECT_EQ(Json::parse(page.substr(begin, end - begin)), Json(run.objects()));
  EXPECT_THAT(page, EndsWith("</html>\n"));
}

TEST(Files, AreWholeIfTheModuleCannotBeLoaded) {
  const Recorded run("steps: []", "--entry Other");
  EXPECT_EQ(run.played.code, 2);
  pugi::xml_document document;
  EXPECT_TRUE(document.load_file(run.path("junit").c_str()));
  EXPECT_THAT(Read(run.path("html")), EndsWith("</html>\n"));
}

TEST(Files, AFailedWriteIsAnError) {
  for (const std::string option : {"--quiet --json ", "--quiet --html ", "--quiet --junit "}) {
    SCOPED_TRACE(option);
    for (const std::string file : {"/dev/full", "/nowhere/file"}) {
      const Played played = Play("steps: []", option + file);
      EXPECT_EQ(played.code, 2);
      EXPECT_THAT(played.output, StartsWith("can't write " + file + ": "));
    }
  }
}

TEST(Files, ADashIsStandardOutputAndMovesTheTimelineToStandardError) {
  const Recorded run("steps: [tick]");
  const std::string play =
      AEGP_HOST " run --plugin " TEST_PLUGIN " " + Word(run.path("story.yaml")) + " --";
  const auto playWithDash = [&](const std::string& option, const std::string& redirections) {
    return RunCommand("(" + play + option + " - " + redirections + ")");
  };
  for (const std::string option : {"json", "html", "junit"}) {
    SCOPED_TRACE(option);
    EXPECT_EQ(playWithDash(option, "2>/dev/null").output, Read(run.path(option)));
    EXPECT_EQ(playWithDash(option, "3>&1 >/dev/null 2>&3").output, run.played.output);
    const Played full = playWithDash(option, ">/dev/full");
    EXPECT_EQ(full.code, 2);
    EXPECT_THAT(full.output, HasSubstr("can't write standard output: "));
  }
  const Played twice = RunCommand(play + "json - --html -");
  EXPECT_EQ(twice.code, 2);
  EXPECT_EQ(twice.output, "only one file can be -, which is standard output\n");
}

TEST(Files, OnlyATerminalGetsColour) {
  const TemporaryFolder folder;
  const std::string story = Word(folder.Write("story.yaml", "steps: [tick]"));
  const std::string host = AEGP_HOST " run --plugin " TEST_PLUGIN " " + story;
  const auto onTerminal = [&](const std::string& variables) {
    return RunCommand("script -qec '" + variables + " " + host + "' /dev/null </dev/null");
  };
  EXPECT_THAT(onTerminal("NO_COLOR= TERM=xterm").output,
              HasSubstr("\x1b[34mhost     \x1b[0m  starts"));
  for (const std::string variables : {"NO_COLOR=1 TERM=xterm", "TERM=dumb"}) {
    EXPECT_THAT(onTerminal(variables).output,
                AllOf(Not(HasSubstr("\x1b[")), HasSubstr("host       starts")));
  }
  EXPECT_THAT(RunCommand("TERM=xterm " + host).output, Not(HasSubstr("\x1b[")));
}

TEST(Files, ShowEachCallIfAsked) {
  const Recorded run(Behaviour("pass another id"), "--calls");
  EXPECT_THAT(run.played.output,
              HasSubstr("plug-in    calls AcquireSuite(AEGP Register Suite, 6, pointer): 0\n"));
  EXPECT_THAT(run.played.output, HasSubstr("calls AEGP_ReportInfo(77, who is this): 1\n"));
  EXPECT_THAT(Read(run.path("json")), HasSubstr("\"result\":1}"));
}

}  // namespace
