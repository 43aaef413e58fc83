#include "FrameworkLog.h"

#include <fcntl.h>
#include <fmt/format.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "Activation.h"
#include "Event.h"
#include "TextFile.h"

namespace host {
namespace {

// A call of the framework. Paths are relative to the session folder.
struct FrameworkCall {
  int64_t tick = 0;
  Call call;         ///< its arguments, out-arguments and `result`, in the journal's order
  std::string text;  ///< the same for a reader
};

struct FrameworkLog {
  GrowingFile journal;
  std::vector<FrameworkCall> calls;          ///< since an expectation last took them
  std::map<std::string, int64_t> callCount;  ///< by operation
  std::vector<Answer> answersLeft;           ///< that no call has used
  Activation activation;
};

// Never destroyed, like the host that uses it.
FrameworkLog& sLog = *new FrameworkLog;

std::string Unescape(std::string_view escaped) {
  std::string text;
  for (size_t i = 0; i < escaped.size(); ++i) {
    if (escaped[i] != '\\' || i + 1 == escaped.size()) {
      text += escaped[i];
      continue;
    }
    const char kind = escaped[++i];
    text += kind == 't' ? '\t' : kind == 'n' ? '\n' : kind;
  }
  return text;
}

FrameworkCall ParseJournalLine(std::string line, int64_t tick) {
  FrameworkCall call{tick, {}, {}};
  for (const std::string& part : Split(line, "\t")) {
    const size_t equals = part.find('=');
    if (call.call.function.empty()) {
      call.call.function = part;
    } else if (equals != std::string::npos) {
      call.call.arguments.push_back({part.substr(0, equals), Unescape(part.substr(equals + 1))});
    }
  }
  ReplaceAll(line, "\t", "  ");
  call.text = std::move(line);
  return call;
}

// What the plug-in passes: of an argument that goes both ways, the journal has this first.
void CheckBuffers(Host& host, const Call& call) {
  constexpr int64_t kIdSize = 256;
  constexpr int64_t kListSize = 0x20000;
  const int64_t max = FindLast(call.arguments, "list") ? kListSize : kIdSize;
  for (const auto& [name, value] : call.arguments) {
    std::string fault;
    if (value == "(not terminated)") {
      fault = fmt::format("{} has no terminator", name);
    } else if (name == "size" && (value == "0" || NumberIn(value) > max)) {
      fault = fmt::format("size is {}, of a buffer of {} bytes", value, max);
    }
    if (!fault.empty()) {
      host.report(Finding::badArgument, fmt::format("{}: {}", call.function, fault),
                  {call.function, name, {}});
    }
    if (name == "size") return;
  }
}

// Returns whether an answer of the session makes this call go wrong. It can get two: one for its
// number, and the next one.
bool TakeAnswers(const std::string& operation) {
  const int64_t number = ++sLog.callCount[operation];
  bool isFaulty = false;
  bool hasNext = false;
  std::erase_if(sLog.answersLeft, [&](const Answer& answer) {
    if (answer.operation != operation) return false;
    const bool isTaken = answer.call == 0 ? !std::exchange(hasNext, true) : answer.call == number;
    isFaulty = isFaulty || (isTaken && answer.isFault);
    return isTaken;
  });
  return isFaulty;
}

void TakeJournal(Host& host) {
  for (std::string& line : sLog.journal.newLines()) {
    host.timeline.shortenPaths(line);
    FrameworkCall taken = ParseJournalLine(std::move(line), host.timeline.tick);
    const bool isFaulty = TakeAnswers(taken.call.function);
    if (isFaulty) host.tellFailure(taken.call.function);
    CheckBuffers(host, taken.call);
    Event entry = host.timeline.event(EventKind::entry, Actor::framework);
    entry.text = taken.text;
    entry.call = taken.call;
    host.timeline.add(std::move(entry));
    sLog.activation.take(taken.call, isFaulty);
    sLog.calls.push_back(std::move(taken));
  }
}

// Reads "TICK OPERATION", or a map from that text to arguments and results.
FrameworkCall ReadExpectedCall(const YamlValue& value) {
  FrameworkCall call;
  const auto entries = value.isMap() ? value.fields() : std::vector<YamlValue>();
  if (value.isMap() && entries.size() != 1) value.fail("has to be one call");
  const std::string head = value.isMap() ? entries.front().key() : value.text();
  std::istringstream words(head);
  std::string rest;
  if (!(words >> call.tick >> call.call.function) || words >> rest) {
    value.fail(fmt::format("'{}' has to be a tick and an operation", head));
  }
  const Operation& operation = FindOperation(value, call.call.function);
  call.text = call.call.function;
  if (entries.empty()) return call;
  entries.front().forEachField([&](const YamlValue& field) {
    const std::string& name = field.key();
    if (name != "result" && !operation.has(name)) {
      field.fail(fmt::format("{} has no argument '{}'", operation.name, name));
    }
    call.call.arguments.push_back({name, field.text()});
    call.text += EscapeControls(fmt::format("  {}={}", name, field.text()));
  });
  return call;
}

// Compares as numbers if both are: "0x10" is the same as "16".
bool SameValue(const std::string& one, const std::string& other) {
  const std::optional<int64_t> number = NumberIn(one);
  return one == other || (number && number == NumberIn(other));
}

bool Matches(const FrameworkCall& expected, const FrameworkCall& found) {
  const auto& fields = expected.call.arguments;
  return expected.tick == found.tick && expected.call.function == found.call.function &&
         std::ranges::all_of(fields, [&](const Argument& field) {
           const std::string* const value = FindLast(found.call.arguments, field.name);
           return value && SameValue(field.value, *value);
         });
}

// Lists the calls as a diff: "-" marks a call that was only expected, "+" one that was only found.
std::string CompareCalls(const std::vector<FrameworkCall>& expected,
                         const std::vector<FrameworkCall>& found) {
  std::string lines;
  bool differs = false;
  for (size_t i = 0; i < std::max(expected.size(), found.size()); ++i) {
    const bool matches = i < expected.size() && i < found.size() && Matches(expected[i], found[i]);
    differs = differs || !matches;
    if (i < expected.size()) {
      lines +=
          fmt::format("\n    {} {} {}", matches ? ' ' : '-', expected[i].tick, expected[i].text);
    }
    if (i < found.size() && !matches) {
      lines += fmt::format("\n    + {} {}", found[i].tick, found[i].text);
    }
  }
  return differs ? "    (- expected, + found)" + lines : "";
}

}  // namespace

void FollowJournal(Host& host) {
  const int journal = open("journal", O_RDONLY | O_CREAT | O_CLOEXEC, 0600);
  if (journal < 0) throw std::runtime_error("can't open journal");
  sLog.journal.follow(journal);
  host.timeline.source = [&host] { TakeJournal(host); };
  sLog.activation.begin(host);
}

void SetUpAnswers(const std::vector<Answer>& answers, Host& host) {
  host.timeline.drain();
  for (const Answer& answer : answers) {
    std::ofstream(host.inFolder("framework-answers"), std::ios::app) << answer.line << '\n';
    sLog.answersLeft.push_back(answer);
  }
}

void Settle(Host& host) {
  const std::string answers = host.inFolder("framework-answers");
  const std::vector<std::string> lines = ReadLines(answers);
  const std::vector<Answer> left = std::exchange(sLog.answersLeft, {});
  WriteLines(answers, {});
  sLog.activation.settle();
  WriteLines(answers, lines);
  sLog.answersLeft = left;
}

void CheckAnswersLeft(Host& host) {
  const HostSettings& settings = host.settings();
  if (settings.tolerant && !settings.isTrial) return;
  std::map<std::string, size_t> counts;
  for (const Answer& answer : sLog.answersLeft) {
    if (!settings.tolerant || answer.call > 0) ++counts[answer.operation];
  }
  for (const auto& [operation, count] : counts) {
    host.report(Finding::setup,
                fmt::format("{} answer(s) of {} were never asked for", count, operation));
  }
}

Check ReadExpectedCalls(const YamlValue& value) {
  if (value.isText()) {
    if (value.text() != "any") value.fail("has to be a list of calls, or any");
    return [](Host& host) {
      host.timeline.drain();
      sLog.calls.clear();
      return std::string();
    };
  }
  std::vector<FrameworkCall> expected;
  value.forEachElement([&](const YamlValue& call) { expected.push_back(ReadExpectedCall(call)); });
  return [expected](Host& host) {
    host.timeline.drain();
    return CompareCalls(expected, std::exchange(sLog.calls, {}));
  };
}

}  // namespace host
