#include "Steps.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <filesystem>
#include <limits>
#include <utility>

#include "Expectations.h"
#include "SessionText.h"
#include "TextFile.h"
#include "User.h"

namespace host {
namespace {

using Draft = SessionDraft;

constexpr int64_t kMostTicks = 1'000'000'000;

void RequireNothing(const YamlValue& value) {
  if (!value.isNothing()) value.fail("takes no value");
}

std::string ReadProject(const YamlValue& value, const Draft& draft) {
  std::string path = value.text();
  if (!draft.projects.contains(path)) {
    value.fail(fmt::format("there is no project '{}' at this point", path));
  }
  return path;
}

Action ReadStart(const YamlValue& value, Draft& draft) {
  if (std::exchange(draft.started, true)) value.fail("the host has started already");
  RequireNothing(value);
  return [](Host& host) { host.start(); };
}

Action ReadOpen(const YamlValue& value, Draft& draft) {
  return
      [path = ReadProject(value, draft)](Host& host) { OpenByDialog(host, host.inFolder(path)); };
}

Action ReadOpenByDoubleClick(const YamlValue& value, Draft& draft) {
  return [path = ReadProject(value, draft)](Host& host) {
    OpenByDoubleClick(host, host.inFolder(path));
  };
}

Action ReadEdit(const YamlValue& value, Draft& /*draft*/) {
  RequireNothing(value);
  return Edit;
}

Action ReadSave(const YamlValue& value, Draft& /*draft*/) {
  RequireNothing(value);
  return Save;
}

Action ReadSaveAs(const YamlValue& value, Draft& draft) {
  const std::string path = value.path();
  draft.projects.insert(path);
  return [path](Host& host) { SaveAs(host, host.inFolder(path)); };
}

Action ReadClose(const YamlValue& value, Draft& /*draft*/) {
  RequireNothing(value);
  return Close;
}

Action ReadOpenMenu(const YamlValue& value, Draft& /*draft*/) {
  RequireNothing(value);
  return [](Host& host) {
    host.timeline.add(Actor::user, "opens a menu");
    host.drawMenus();
  };
}

Action ReadPick(const YamlValue& value, Draft& /*draft*/) {
  return [item = value.text()](Host& host) { Pick(host, item); };
}

Action ReadPickAll(const YamlValue& value, Draft& /*draft*/) {
  RequireNothing(value);
  return PickAll;
}

Action ReadFront(const YamlValue& value, Draft& /*draft*/) {
  return [application = value.text()](Host& host) { host.bringToFront(application); };
}

Action ReadRemove(const YamlValue& value, Draft& draft) {
  const std::string path = ReadProject(value, draft);
  draft.projects.erase(path);
  return [path](Host& host) {
    host.timeline.add(Actor::user, fmt::format("removes {} from the disk", path));
    std::filesystem::remove(host.inFolder(path));
  };
}

Action ReadQuit(const YamlValue& value, Draft& draft) {
  draft.quit = true;
  RequireNothing(value);
  return Quit;
}

Action ReadTick(const YamlValue& value, Draft& /*draft*/) {
  int64_t count = 1;
  int64_t seconds = 0;
  int64_t ticks = 1;  // after which the clock moves
  if (value.isMap()) {
    const auto fields = value.fields({"count", "seconds per tick", "ticks per second"});
    ReadField(fields, "count", [&](const YamlValue& all) { count = all.integer(1, kMostTicks); });
    const YamlValue* slow = Find(fields, "seconds per tick");
    const YamlValue* fast = Find(fields, "ticks per second");
    if (slow && fast) value.fail("takes one of 'seconds per tick' and 'ticks per second'");
    if (slow) seconds = slow->integer(0, kMostTicks);
    if (fast) {
      ticks = fast->integer(1, kMostTicks);
      seconds = 1;
    }
  } else if (!value.isNothing()) {
    count = value.integer(1, kMostTicks);
  }
  return [count, seconds, ticks](Host& host) {
    for (int64_t i = 0; i < count; ++i) {
      if (i % ticks == 0) host.advanceTime(seconds);
      host.idle();
    }
  };
}

Action ReadWait(const YamlValue& value, Draft& /*draft*/) {
  return [seconds = value.integer(1, kMostTicks)](Host& host) {
    host.advanceTime(seconds);
    host.timeline.add(Actor::session, fmt::format("{} second(s) go by", seconds));
  };
}

// For what the plug-in does in threads of its own.
Action ReadPause(const YamlValue& value, Draft& /*draft*/) {
  constexpr int64_t kMaxMilliseconds = 600'000;
  const std::string text = value.text();
  int64_t milliseconds = 0;
  const auto [unit, error] = std::from_chars(text.data(), text.data() + text.size(), milliseconds);
  const bool isWhole = error == std::errc() && std::string_view(unit) == " ms";
  if (!isWhole || milliseconds < 1 || milliseconds > kMaxMilliseconds) {
    value.fail(fmt::format("has to be a time such as 200 ms, not '{}'", text));
  }
  return [milliseconds](Host& host) {
    host.timeline.add(Actor::session, fmt::format("pauses for {} ms", milliseconds));
    host.pause(std::chrono::milliseconds(milliseconds));
  };
}

// A tolerant session expects nothing, and so takes one tick.
Action ReadTickUntil(const YamlValue& value, Draft& /*draft*/) {
  const YamlValue* most = nullptr;
  std::vector<std::pair<std::string, Check>> checks;
  const auto fields = value.fields();
  for (const auto& [key, field] : fields) {
    if (key == "at most") {
      most = &field;
    } else {
      checks.emplace_back(key, ReadPeek(key, field));
    }
  }
  if (!most || checks.empty()) value.fail("needs an expectation, and the key 'at most'");
  return [checks, place = value.place(), count = most->integer(1, kMostTicks)](Host& host) {
    std::string difference;
    for (int64_t i = 0; i < count; ++i) {
      host.idle();
      host.timeline.drain();
      difference.clear();
      for (const auto& [key, check] : checks) {
        if (difference.empty()) difference = check(host);
      }
      if (difference.empty() || host.settings().tolerant) break;
    }
    if (!host.settings().tolerant) host.timeline.addExpectation("tick until", place, difference);
  };
}

Action ReadDialog(const YamlValue& value, Draft& draft) {
  std::string title;
  std::string className = kDialogClass;
  if (value.isMap()) {
    const auto fields = value.fields({"title", "class"});
    ReadField(fields, "title", [&](const YamlValue& text) { title = text.text(); });
    ReadField(fields, "class", [&](const YamlValue& name) {
      className = name.text();
      if (!KnowsWindowClass(draft.host, className)) {
        name.fail(fmt::format("there is no window class '{}'", className));
      }
    });
  } else {
    title = value.text();
  }
  return [title, className](Host& host) { host.showDialog(title, className); };
}

Action ReadFail(const YamlValue& value, Draft& /*draft*/) {
  const auto fields = value.fields({"function", "result", "times", "call"});
  const YamlValue* name = Find(fields, "function");
  if (!name) value.fail("the key 'function' is missing");
  Fault fault{name->text()};
  ReadField(fields, "result", [&](const YamlValue& code) {
    fault.result = static_cast<A_Err>(code.integer(1, std::numeric_limits<A_Err>::max()));
  });
  ReadField(fields, "times",
            [&](const YamlValue& count) { fault.times = count.integer(1, kMostTicks); });
  ReadField(fields, "call", [&](const YamlValue& call) {
    fault.call = call.integer(1, kMostTicks);
    fault.times = 1;
  });
  if (Find(fields, "times") && Find(fields, "call")) value.fail("takes one of 'times' and 'call'");
  if (!FunctionsThatCanFail().contains(fault.function)) {
    name->fail(fmt::format("the host has no '{}' that could fail", fault.function));
  }
  const std::string text = fault.call > 0
                               ? fmt::format("has call {} of {} fail", fault.call, fault.function)
                               : fmt::format("has {} fail from now on", fault.function);
  return [=](Host& host) {
    host.timeline.add(Actor::session, text);
    host.faults.add(fault);
  };
}

Action ReadRefuse(const YamlValue& value, Draft& /*draft*/) {
  const auto fields = value.fields({"suite", "version"});
  const YamlValue* name = Find(fields, "suite");
  const YamlValue* number = Find(fields, "version");
  if (!name || !number) value.fail("needs the keys 'suite' and 'version'");
  const std::string suite = NameOfSuite(name->text(), static_cast<int32>(number->integer(1, 1000)));
  if (!HasSuite(suite)) value.fail("the host has no such suite to refuse");
  return [=](Host& host) {
    host.faults.add({suite, PF_Err_BAD_CALLBACK_PARAM, Fault::kAlways, 0, true});
  };
}

Action ReadProjectPath(const YamlValue& value, Draft& /*draft*/) {
  const auto fields = value.fields({"utf16", "length"});
  const YamlValue* units = Find(fields, "utf16");
  const YamlValue* length = Find(fields, "length");
  if (!units == !length) value.fail("needs either 'utf16' or 'length'");
  std::u16string path = u"/";
  if (length) {
    path.resize(static_cast<size_t>(length->integer(1, 100'000)), u'x');
  } else {
    path.clear();
    units->forEachElement(
        [&](const YamlValue& unit) { path += static_cast<char16_t>(unit.integer(1, 0xFFFF)); });
  }
  return [path](Host& host) {
    host.timeline.add(Actor::session,
                      fmt::format("has the host report a path of {} units", path.size()));
    host.project().reportedPath = path;
  };
}

Action ReadExpect(const YamlValue& value, Draft& draft) {
  return ReadExpectations(value, draft.part);
}

Action ReadRepeat(const YamlValue& value, Draft& draft);

struct StepKind {
  std::string_view name;
  Action (*read)(const YamlValue&, Draft&);
  bool needsHost;  ///< only while the host runs
};

constexpr std::array kStepKinds{
    StepKind{"start", ReadStart, false},
    StepKind{"open", ReadOpen, true},
    StepKind{"open by double click", ReadOpenByDoubleClick, true},
    StepKind{"edit", ReadEdit, true},
    StepKind{"save", ReadSave, true},
    StepKind{"save as", ReadSaveAs, true},
    StepKind{"close", ReadClose, true},
    StepKind{"open menu", ReadOpenMenu, true},
    StepKind{"pick", ReadPick, true},
    StepKind{"pick all", ReadPickAll, true},
    StepKind{"front", ReadFront, true},
    StepKind{"remove", ReadRemove, false},
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

// Reads a step: its name alone, or a map from the name to a value.
YamlValue::Field NameAndValue(const YamlValue& step) {
  if (step.isText()) return {step.text(), step.withNothing(step.text())};
  const auto fields = step.fields();
  if (fields.empty()) step.fail("a step is one name, and a value if it takes one");
  if (fields.size() > 1) {
    fields[1].second.fail(
        fmt::format("is at the depth of the step '{}': indent it further, or begin a step with '-'",
                    fields.front().first));
  }
  return fields.front();
}

[[noreturn]] void FailForUnknownStep(const YamlValue& value, const SessionPart& part) {
  std::vector<std::string_view> names = part.steps();
  for (const StepKind& kind : kStepKinds) names.push_back(kind.name);
  FailForUnknown(value, "step", names, part);
}

Step ReadStep(const YamlValue& step, Draft& draft) {
  const auto [name, value] = NameAndValue(step);
  const std::vector<std::string_view> more = draft.part.steps();
  const bool isOfPart = std::find(more.begin(), more.end(), name) != more.end();
  const auto* const kind = std::find_if(
      kStepKinds.begin(), kStepKinds.end(),
      [&, wanted = std::string_view(name)](const StepKind& each) { return each.name == wanted; });
  if (!isOfPart && kind == kStepKinds.end()) FailForUnknownStep(value, draft.part);
  if (draft.quit && name != "expect") value.fail("comes after the host has quit");
  if (isOfPart) return {step.place(), draft.part.readStep(name, value)};
  if (kind->needsHost && !draft.started) value.fail("comes before the host has started");
  return {step.place(), kind->read(value, draft), name == "quit"};
}

Action ReadRepeat(const YamlValue& value, Draft& draft) {
  const auto fields = value.fields({"times", "steps"});
  const YamlValue* count = Find(fields, "times");
  const YamlValue* list = Find(fields, "steps");
  if (!count || !list) value.fail("needs the keys 'times' and 'steps'");
  std::vector<Step> steps;
  list->forEachElement([&](const YamlValue& step) {
    steps.push_back(ReadStep(step, draft));
    if (steps.back().quits) NameAndValue(step).second.fail("can't be repeated");
  });
  return [steps, times = count->integer(1, kMostTicks)](Host& host) {
    for (int64_t i = 0; i < times; ++i) {
      for (const Step& step : steps) PlayStep(step, host);
    }
  };
}

}  // namespace

bool NeedsHost(const YAML::Node& step) {
  return std::any_of(kStepKinds.begin(), kStepKinds.end(), [&](const StepKind& kind) {
    return kind.needsHost && IsStep(step, kind.name);
  });
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
  static const Variables kNoVariables;
  static const HostSettings kAnyHost;
  SessionDraft draft{part, kAnyHost, {}};
  YamlFile file(yaml, yaml);
  Step step;
  file.readWith(
      [&] { step = ReadStep(YamlValue(file.root(), "step", &file, &kNoVariables), draft); });
  return step;
}

std::vector<Step> ReadSteps(const YamlValue& value, SessionDraft draft) {
  const std::vector<YamlValue> list = value.list();
  std::vector<Step> steps;
  bool startsItself = false;
  value.forEachElement([&](const YamlValue& step) {
    if (NameAndValue(step).first == "start") startsItself = true;
  });
  if (!startsItself) {
    draft.started = true;
    steps.push_back({value.place(), [](Host& host) { host.start(); }});
  }
  value.forEachElement([&](const YamlValue& step) { steps.push_back(ReadStep(step, draft)); });
  const std::string last = list.empty() ? value.place() : list.back().place();
  if (!draft.quit) steps.push_back({last, Quit, true});
  return steps;
}

}  // namespace host
