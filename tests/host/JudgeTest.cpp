#include "Judge.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "Faults.h"
#include "FlightRecord.h"

namespace {

using host::Event;
using host::EventKind;
using host::Finding;
using host::Judge;
using host::JudgeRules;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

Event Fact(Finding finding, const std::string& function = "", const std::string& detail = "",
           const std::string& value = "") {
  Event fact(EventKind::fact);
  fact.name = host::KindOf(finding).name;
  fact.text = "text";
  fact.function = function;
  fact.detail = detail;
  fact.value = value;
  fact.hook = "idle hook";
  fact.tick = 1;
  return fact;
}

Event Of(EventKind kind, const std::string& name = "") {
  Event event(kind);
  event.name = event.text = name;
  return event;
}

Event Expectation(const std::string& key, std::vector<std::string> texts) {
  Event event = Of(EventKind::expectation, key);
  event.texts = std::move(texts);
  return event;
}

Event AtVisit(Event event, int64_t visit, std::optional<int64_t> result = {}) {
  event.visit = visit;
  event.result = result;
  return event;
}

/// Returns what is found when these facts come in a session.
std::vector<Event> Findings(const JudgeRules& rules, const std::vector<Event>& facts) {
  Judge judge(rules);
  for (const Event& fact : facts) judge.take(fact);
  return judge.finish().findings;
}

/// Names what is found when these facts come before the end of a session.
std::vector<std::string> Found(const JudgeRules& rules, std::vector<Event> facts) {
  facts.push_back(Of(EventKind::played));
  facts.push_back(Of(EventKind::finished));
  std::vector<std::string> names;
  for (const Event& found : Findings(rules, facts)) names.push_back(found.name);
  return names;
}

TEST(Judge, AcceptsKnownIssuesByNames) {
  const Event fact = Fact(Finding::unsavedWorkLost, "AEGP_NewProject", "closed before");
  const auto accepting = [](const host::KnownIssue& issue) {
    return JudgeRules{{issue}, {}, false, false};
  };
  const Event failure = Of(EventKind::failure, "AEGP_ProjectIsDirty");
  using I = host::KnownIssue;
  const Finding lost = Finding::unsavedWorkLost;
  EXPECT_THAT(Found({}, {fact}), ElementsAre("unsaved-work-lost"));
  EXPECT_THAT(Found(accepting(I{lost, "", "", {}, ""}), {fact}), IsEmpty());
  EXPECT_THAT(Found(accepting(I{lost, "AEGP_NewProject", "closed before", {}, ""}), {fact}),
              IsEmpty());
  for (const I& other :
       {I{Finding::handleLeaked, "", "", {}, ""}, I{lost, "AEGP_New", "", {}, ""},
        I{lost, "", "closed", {}, ""}, I{lost, "", "", {"AEGP_ProjectIsDirty"}, ""}}) {
    EXPECT_THAT(Found(accepting(other), {fact}), Contains("unsaved-work-lost"));
  }
  const I after{lost, "", "", {"AEGP_Other", "AEGP_ProjectIsDirty"}, ""};
  EXPECT_THAT(Found(accepting(after), {failure, fact}), IsEmpty());
  EXPECT_THAT(Found(accepting(after), {fact, failure}), Contains("unsaved-work-lost"));
}

TEST(Judge, FindsAKnownIssueThatNeverCame) {
  const host::KnownIssue always{Finding::handleLeaked, "", "", {}, ""};
  const host::KnownIssue after{Finding::handleLeaked, "", "", {"AEGP_NewProject"}, ""};
  EXPECT_THAT(Found({{always}, {}, false, false}, {}), ElementsAre("setup"));
  EXPECT_THAT(Found({{always}, {}, true, false}, {}), IsEmpty());
  EXPECT_THAT(Found({{after}, {}, false, false}, {}), IsEmpty());
  EXPECT_THAT(Found({{after}, {}, false, false}, {Of(EventKind::failure, "AEGP_NewProject")}),
              ElementsAre("setup"));
}

TEST(Judge, LetsAnExpectNameFactsOfItsKey) {
  const std::vector<Event> facts{Fact(Finding::nullArgument, "FreeBlock", "block"),
                                 Fact(Finding::hookError, "", "", "idle hook 3")};
  const auto with = [&](const Event& expect) {
    std::vector<Event> all = facts;
    all.push_back(expect);
    return all;
  };
  EXPECT_THAT(Found({}, facts), ElementsAre("null-argument", "hook-error"));
  EXPECT_THAT(Found({}, with(Expectation("findings", {"null-argument"}))),
              ElementsAre("hook-error"));
  EXPECT_THAT(Found({}, with(Expectation("errors", {"idle hook 3"}))),
              ElementsAre("null-argument"));
  // What is wrong is told once: that the expectation isn't met.
  EXPECT_THAT(Found({}, with(Expectation("errors", {}))),
              ElementsAre("null-argument", "expectation"));
  EXPECT_THAT(Found({{}, {Finding::nullArgument}, false, false}, facts), ElementsAre("hook-error"));
}

TEST(Judge, ExcusesInATolerantSessionWhatAnAnsweredErrorMayHaveCaused) {
  const JudgeRules tolerant{{}, {}, true, false};
  const Event answer = AtVisit(Of(EventKind::answer), 4, 24301);
  const Event error = Fact(Finding::hookError, "", "", "idle hook 24301");
  const Event report = Fact(Finding::userReport, "", "", "oh");
  EXPECT_THAT(Found(tolerant, {answer, AtVisit(error, 4, 24301), AtVisit(report, 4)}), IsEmpty());
  EXPECT_THAT(Found(tolerant, {answer, AtVisit(error, 4, 7), AtVisit(error, 5, 24301)}),
              ElementsAre("hook-error"));
  EXPECT_THAT(Found({}, {answer, AtVisit(error, 4, 24301)}), ElementsAre("hook-error"));
  // An expectation may come or not.
  EXPECT_THAT(Found(tolerant, {AtVisit(report, 5), Expectation("reports", {"oh", "no"})}),
              IsEmpty());
}

TEST(Judge, PutsTheCauseFirstAndCountsWhatIsAlike) {
  std::vector<Event> facts;
  for (int64_t tick = 1; tick <= 100; ++tick) {
    facts.push_back(Fact(Finding::hookError, "", "", "idle hook 3"));
    facts.push_back(Fact(Finding::nullArgument, "AEGP_ReportInfo", "info_stringZ"));
    facts.back().tick = tick;
  }
  facts.push_back(Fact(Finding::nullArgument, "FreeBlock", "block"));
  facts.push_back(Of(EventKind::finished));
  const std::vector<Event> findings = Findings({}, facts);
  ASSERT_EQ(findings.size(), 3U);
  EXPECT_EQ(findings[0].name, "null-argument");
  EXPECT_THAT(findings[0].text, HasSubstr("\n    100 times, first at tick 1"));
  EXPECT_EQ(findings[1].text, "text");
  EXPECT_EQ(findings[2].name, "hook-error");
}

TEST(Judge, TellsEachExpectationThatIsNotMet) {
  Event dirty = Of(EventKind::expectation, "dirty");
  Event handled = Of(EventKind::expectation, "command handled");
  dirty.where = handled.where = "story.yaml:13";
  dirty.difference = handled.difference = "    expected: true\n    found:    false";
  Event later = dirty;
  later.where = "story.yaml:20";
  EXPECT_THAT(Found({}, {dirty, handled, later}),
              ElementsAre("expectation", "expectation", "expectation"));
}

TEST(Judge, TellsAHundredFindingsOfAKind) {
  std::vector<Event> facts{Fact(Finding::hookError)};
  for (int i = 0; i < 150; ++i) {
    facts.push_back(Fact(Finding::nullArgument, "function " + std::to_string(i)));
  }
  facts.push_back(Of(EventKind::finished));
  const std::vector<Event> findings = Findings({}, facts);
  ASSERT_EQ(findings.size(), 101U);
  EXPECT_EQ(findings[98].text, "text");
  EXPECT_THAT(findings[99].text, HasSubstr("no more of this kind are told"));
}

TEST(Judge, LeavesOutWhatASessionThatWasCutShortMightHaveExpected) {
  const std::vector<Event> findings =
      Findings({}, {Fact(Finding::userReport, "", "", "oh"),
                    Fact(Finding::nullArgument, "FreeBlock", "block"), Fact(Finding::crash)});
  ASSERT_EQ(findings.size(), 2U);
  EXPECT_EQ(findings[0].name, "crash");
  EXPECT_EQ(findings[1].name, "null-argument");
}

TEST(Faults, WaitWhilePausedExceptThatCallsAreCounted) {
  host::Faults faults;
  faults.add({"by times", 5, 1});
  faults.add({"by number", 6, 1, 2});
  faults.pause(true);
  EXPECT_EQ(faults.take("by times"), A_Err_NONE);
  EXPECT_EQ(faults.take("by number"), A_Err_NONE);
  faults.pause(false);
  EXPECT_EQ(faults.take("by times"), 5);
  EXPECT_EQ(faults.take("by times"), A_Err_NONE);
  EXPECT_EQ(faults.take("by number"), 6);
}

TEST(WatchdogPause, CountsOnlyTheTimeAroundIt) {
  host::FlightRecord record;
  const int64_t began = host::MonotonicNow() - 1'000'000'000;
  record.watchdogStart = began;
  {
    const host::WatchdogPause pause(record);
    const host::WatchdogPause inner(record);
    EXPECT_EQ(record.watchdogStart, 0);
  }
  EXPECT_GE(record.watchdogStart, began);
  EXPECT_LT(record.watchdogStart, began + 1'000'000'000);
  record.watchdogStart = 0;
  { const host::WatchdogPause pause(record); }
  EXPECT_EQ(record.watchdogStart, 0);
}

}  // namespace
