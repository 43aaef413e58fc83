#include "Steps.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <filesystem>
#include <functional>
#include <limits>
#include <optional>
#include <regex>
#include <utility>

#include "Expectations.h"
#include "User.h"

namespace host {
namespace {

constexpr int64_t kMaxCount = 1'000'000'000;

void RefuseBoth(const YamlValue& value, std::string_view one, std::string_view other) {
  if (value.find(one) && value.find(other)) {
    value.fail(fmt::format("takes one of '{}' and '{}'", one, other));
  }
}

template <auto play>
Action ReadBare(const YamlValue& value, StepDraft& /*draft*/) {
  if (!value.isNothing()) value.fail("takes no value");
  return play;
}

template <auto play>
Action ReadText(const YamlValue& value, StepDraft& /*draft*/) {
  return [text = value.text()](Host& host) { std::invoke(play, host, text); };
}

template <auto play>
Action ReadProject(const YamlValue& value, StepDraft& /*draft*/) {
  return [path = value.path()](Host& host) {
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(host.inFolder(path), ignored)) {
      throw StepImpossible(fmt::format("there is no project '{}'", path));
    }
    std::invoke(play, host, path);
  };
}

Action ReadSaveAs(const YamlValue& value, StepDraft& /*draft*/) {
  return [path = value.path()](Host& host) { SaveAs(host, path); };
}

Action ReadStart(const YamlValue& value, StepDraft& draft) {
  if (std::exchange(draft.started, true)) value.fail("the host has started already");
  return ReadBare<&Host::start>(value, draft);
}

Action ReadQuit(const YamlValue& value, StepDraft& draft) {
  draft.quit = true;
  return ReadBare<Quit>(value, draft);
}

Action ReadTick(const YamlValue& value, StepDraft& /*draft*/) {
  int64_t count = 1;
  int64_t seconds = 0;
  int64_t ticks = 1;  // for each move of the clock by `seconds`
  const auto readTicks = [&](const YamlValue& number) {
    ticks = number.integer(1, kMaxCount);
    seconds = 1;
  };
  if (value.isMap()) {
    value.readKeys({{"count", Into(count, 1, kMaxCount)},
                    {"seconds per tick", Into(seconds, 0, kMaxCount)},
                    {"ticks per second", readTicks}});
    RefuseBoth(value, "seconds per tick", "ticks per second");
  } else if (!value.isNothing()) {
    count = value.integer(1, kMaxCount);
  }
  return [=](Host& host) {
    for (int64_t i = 0; i < count; ++i) {
      if (i % ticks == 0) host.advanceTime(seconds);
      host.idle();
    }
  };
}

Action ReadWait(const YamlValue& value, StepDraft& /*draft*/) {
  return [seconds = value.integer(1, kMaxCount)](Host& host) {
    host.advanceTime(seconds);
    host.timeline.add(Actor::session, fmt::format("{} second(s) go by", seconds));
  };
}

// For what the plug-in does in threads of its own.
Action ReadPause(const YamlValue& value, StepDraft& /*draft*/) {
  const std::string text = value.text();
  std::smatch parts;
  if (!std::regex_match(text, parts, std::regex("([1-9]\\d{0,5}) ms"))) {
    value.fail(fmt::format("has to be a time such as 200 ms, not '{}'", text));
  }
  return [milliseconds = std::stoi(parts[1])](Host& host) {
    host.timeline.add(Actor::session, fmt::format("pauses for {} ms", milliseconds));
    host.pause(std::chrono::milliseconds(milliseconds));
  };
}

// A tolerant session expects nothing, and so takes one tick.
Action ReadTickUntil(const YamlValue& value, StepDraft& /*draft*/) {
  int64_t max = 0;
  std::vector<YamlValue> expected;
  for (const YamlValue& field : value.fields()) {
    if (field.key() == "at most") {
      max = field.integer(1, kMaxCount);
    } else {
      expected.push_back(field);
    }
  }
  if (max == 0 || expected.empty()) value.fail("needs an expectation, and the key 'at most'");
  return [max, check = ReadLasting(expected), place = value.place()](Host& host) {
    std::string difference;
    for (int64_t i = 0; i < max; ++i) {
      host.idle();
      host.timeline.drain();
      if (host.settings().tolerant) return;
      difference = check(host);
      if (difference.empty()) break;
    }
    host.timeline.addExpectation("tick until", place, difference);
  };
}

Action ReadDialog(const YamlValue& value, StepDraft& draft) {
  std::string title;
  std::string className = kDialogClass;
  if (value.isMap()) {
    const auto readClass = [&](const YamlValue& name) {
      className = ReadWindowClass(name, draft.host);
    };
    value.readKeys({{"title", Into(title)}, {"class", readClass}});
  } else {
    title = value.text();
  }
  return [title, className](Host& host) { host.showDialog(title, className); };
}

Action ReadFail(const YamlValue& value, StepDraft& /*draft*/) {
  Fault fault;
  int64_t result = fault.result;
  const auto readFunction = [&](const YamlValue& name) {
    fault.function = name.text();
    if (FunctionsThatCanFail().contains(fault.function)) return;
    name.fail(fmt::format("the host has no '{}' that could fail", fault.function));
  };
  value.readKeys({{"function", readFunction, true},
                  {"result", Into(result, 1, std::numeric_limits<A_Err>::max())},
                  {"times", Into(fault.times, 1, kMaxCount)},
                  {"call", Into(fault.call, 1, kMaxCount)}});
  RefuseBoth(value, "times", "call");
  fault.result = static_cast<A_Err>(result);
  std::string text = fmt::format("has {} fail from now on", fault.function);
  if (fault.call > 0) {
    fault.times = 1;
    text = fmt::format("has call {} of {} fail", fault.call, fault.function);
  }
  return [fault, text](Host& host) {
    host.timeline.add(Actor::session, text);
    host.faults.add(fault);
  };
}

Action ReadRefuse(const YamlValue& value, StepDraft& /*draft*/) {
  std::string name;
  int64_t version = 0;
  value.readKeys({{"suite", Into(name), true}, {"version", Into(version, 1, 1000), true}});
  const std::string suite = NameOfSuite(name, static_cast<int32>(version));
  if (!HasSuite(suite)) value.fail("the host has no such suite to refuse");
  return [suite](Host& host) {
    host.faults.add({suite, PF_Err_BAD_CALLBACK_PARAM, Fault::kAlways, 0, true});
  };
}

Action ReadProjectPath(const YamlValue& value, StepDraft& /*draft*/) {
  std::optional<std::u16string> path;
  const auto readUnits = [&](const YamlValue& units) {
    path.emplace();
    units.forEachElement(
        [&](const YamlValue& unit) { *path += static_cast<char16_t>(unit.integer(1, 0xFFFF)); });
  };
  int64_t length = 0;
  value.readKeys({{"utf16", readUnits}, {"length", Into(length, 1, 100'000)}});
  RefuseBoth(value, "utf16", "length");
  if (length > 0) path.emplace(u"/").resize(static_cast<size_t>(length), u'x');
  if (!path) value.fail("needs one of 'utf16' and 'length'");
  return [path = *path](Host& host) {
    host.timeline.add(Actor::session,
                      fmt::format("has the host report a path of {} units", path.size()));
    host.project().pathForPlugin = path;
  };
}

Action ReadExpect(const YamlValue& value, StepDraft& draft) {
  return ReadExpectations(value, draft.part);
}

Action ReadRepeat(const YamlValue& value, StepDraft& draft);

struct StepKind {
  std::string_view name;
  Action (*read)(const YamlValue&, StepDraft&);
  bool needsHost;  // only while the host runs
};

constexpr std::array kStepKinds{
    StepKind{"start", ReadStart, false},
    StepKind{"open", ReadProject<OpenByDialog>, true},
    StepKind{"open by double click", ReadProject<OpenByDoubleClick>, true},
    StepKind{"edit", ReadBare<&Host::editProject>, true},
    StepKind{"save", ReadBare<Save>, true},
    StepKind{"save as", ReadSaveAs, true},
    StepKind{"close", ReadBare<Close>, true},
    StepKind{"open menu", ReadBare<OpenMenu>, true},
    StepKind{"pick", ReadText<Pick>, true},
    StepKind{"pick all", ReadBare<PickAll>, true},
    StepKind{"front", ReadText<&Host::bringToFront>, true},
    StepKind{"remove", ReadProject<Remove>, false},
    StepKind{"quit", ReadQuit, true},
    StepKind{"tick", ReadTick, true},
    StepKind{"tick until", ReadTickUntil, true},
    StepKind{"wait", ReadWait, false},
    StepKind{"pause", ReadPause, false},
    StepKind{"dialog", ReadDialog, true},
    StepKind{"fail", ReadFail, false},
    StepKind{"refuse", ReadRefuse, false},
    StepKind{"project path", ReadProjectPath, true},
    StepKind{"expect", ReadExpect, false},
    StepKind{"repeat", ReadRepeat, true},
};

// Returns the value of a step, with the step's name as its key. A step is its name alone, or a map
// from the name to a value.
YamlValue ValueOf(const YamlValue& step) {
  if (step.isText()) return step.withNothing(step.text());
  const std::vector<YamlValue> fields = step.fields();
  if (fields.empty()) step.fail("a step is one name, and a value if it takes one");
  if (fields.size() > 1) {
    fields[1].fail(
        fmt::format("is at the depth of the step '{}': indent it further, or begin a step with '-'",
                    fields.front().key()));
  }
  return fields.front();
}

[[noreturn]] void FailForUnknownStep(const YamlValue& value, const SessionPart& part) {
  RefuseExpectation(value, part);
  std::vector<std::string_view> names;
  for (const auto& [name, read] : part.steps) names.push_back(name);
  for (const StepKind& kind : kStepKinds) names.push_back(kind.name);
  value.failForUnknown("step", names);
}

Step ReadStep(const YamlValue& step, StepDraft& draft) {
  const YamlValue value = ValueOf(step);
  const std::string& name = value.key();
  const auto ofPart = draft.part.steps.find(name);
  const bool isOfPart = ofPart != draft.part.steps.end();
  const auto* const kind = std::ranges::find(kStepKinds, name, &StepKind::name);
  if (!isOfPart && kind == kStepKinds.end()) FailForUnknownStep(value, draft.part);
  if (draft.quit && name != "expect") value.fail("comes after the host has quit");
  if (isOfPart) return {step.place(), ofPart->second(value)};
  if (kind->needsHost && !draft.started) value.fail("comes before the host has started");
  return {step.place(), kind->read(value, draft), name == "quit"};
}

Action ReadRepeat(const YamlValue& value, StepDraft& draft) {
  int64_t times = 0;
  std::vector<Step> steps;
  const auto readSteps = [&](const YamlValue& list) {
    list.forEachElement([&](const YamlValue& step) {
      steps.push_back(ReadStep(step, draft));
      if (steps.back().quits) ValueOf(step).fail("can't be repeated");
    });
  };
  value.readKeys({{"times", Into(times, 1, kMaxCount), true}, {"steps", readSteps, true}});
  return [steps, times](Host& host) {
    for (int64_t i = 0; i < times; ++i) {
      for (const Step& step : steps) PlayStep(step, host);
    }
  };
}

}  // namespace

std::string ReadWindowClass(const YamlValue& name, const HostSettings& host) {
  if (!KnowsWindowClass(host, name.text())) {
    name.fail(fmt::format("there is no window class '{}'", name.text()));
  }
  return name.text();
}

void PlayStep(const Step& step, Host& host) {
  host.beginStep(step.place);
  try {
    step.play(host);
  } catch (const StepImpossible& impossible) {
    if (!host.settings().tolerant) throw;
    host.timeline.add(Actor::session, fmt::format("skips the step: {}", impossible.what()));
  }
}

Step ReadStepOf(const std::string& yaml, const SessionPart& part) {
  static const HostSettings kAnyHost;
  StepDraft draft{part, kAnyHost};
  YamlFile file(yaml, yaml);
  Step step = ReadStep(YamlValue(file.root(), "step", file), draft);
  file.throwFaults();
  return step;
}

std::vector<Step> ReadSteps(const YamlValue& value, StepDraft draft) {
  std::vector<Step> steps;
  bool startsItself = false;
  value.forEachElement([&](const YamlValue& step) {
    startsItself = startsItself || ValueOf(step).key() == "start";
  });
  if (!startsItself) {
    draft.started = true;
    steps.push_back({value.place(), &Host::start});
  }
  value.forEachElement([&](const YamlValue& step) { steps.push_back(ReadStep(step, draft)); });
  if (!draft.quit)
    steps.push_back({steps.empty() ? value.place() : steps.back().place, Quit, true});
  return steps;
}

}  // namespace host
