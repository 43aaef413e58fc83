#include "FrameworkLog.h"

#include <fcntl.h>
#include <fmt/format.h>

#include <cstdlib>
#include <stdexcept>
#include <string_view>

namespace host {
namespace {

constexpr char kActivation[] = "activation";
constexpr int64_t kTicksOfActivation = 24;

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

FrameworkCall ParseJournalLine(const std::string& line) {
  const std::vector<std::string> parts = Split(line, "\t");
  FrameworkCall call;
  call.operation = call.text = parts.front();
  for (size_t i = 1; i < parts.size(); ++i) {
    const size_t equals = parts[i].find('=');
    if (equals == std::string::npos) continue;
    call.fields.push_back({parts[i].substr(0, equals), Unescape(parts[i].substr(equals + 1))});
    call.text += "  " + parts[i];
  }
  return call;
}

// Follows the plug-in's font activation by its calls, because its steps are seen from outside
// alone: step 1 tells the framework of the document, step 3 has the host scan the fonts, and step
// 10 opens the project again. A document told of twice on one tick is one activation.
void FollowActivation(Timeline& timeline, const Event& entry) {
  std::optional<int64_t>& began = TheFrameworkLog().activationBegan;
  if (entry.actor == Actor::framework && entry.call.function == "HandleOpenExistingDocument") {
    if (began == entry.tick) return;
    began = entry.tick;
    // In case that step 1 of another activation was the last.
    timeline.setState(kActivation, "0");
    timeline.setState(kActivation, "1");
  } else if (began && entry.call.function == "AEGP_UpdateFontList") {
    timeline.setState(kActivation, "3");
  } else if (began && entry.call.function == "AEGP_OpenProjectFromPath") {
    timeline.setState(kActivation, "10");
  }
}

void FollowEnabled(Timeline& timeline, const Event& entry) {
  if (entry.actor != Actor::framework || entry.call.function != "PluginIsEnabled") return;
  const std::string* const enabled = FindLast(entry.call.arguments, "enabled");
  if (!enabled) return;
  TheFrameworkLog().enabled = *enabled == "true";
  timeline.setState("enabled", *enabled);
}

// A plug-in that is disabled takes no step, and so doesn't end an activation.
void EndActivation(Timeline& timeline) {
  std::optional<int64_t>& began = TheFrameworkLog().activationBegan;
  if (!began || timeline.tick < *began + kTicksOfActivation || !TheFrameworkLog().enabled) return;
  began.reset();
  timeline.setState(kActivation, "0");
}

// What the plug-in passes: of an argument that goes both ways, the journal has this first.
void CheckBuffers(Host& host, const FrameworkCall& call) {
  constexpr int64_t kIdSize = 256;
  constexpr int64_t kListSize = 0x20000;
  const bool isList = FindLast(call.fields, "list") != nullptr;
  for (const auto& [name, value] : call.fields) {
    if (value == "(not terminated)") {
      host.report(Finding::badArgument,
                  fmt::format("{}: {} has no terminator", call.operation, name),
                  {call.operation, name, {}});
    }
    if (name != "size") continue;
    const int64_t most = isList ? kListSize : kIdSize;
    if (value == "0" || std::strtoll(value.c_str(), nullptr, 10) > most) {
      host.report(
          Finding::badArgument,
          fmt::format("{}: size is {}, of a buffer of {} bytes", call.operation, value, most),
          {call.operation, name, {}});
    }
    return;
  }
}

void TakeJournal(Host& host) {
  for (std::string& line : TheFrameworkLog().journal.newLines()) {
    host.timeline.shortenPaths(line);
    FrameworkCall call = ParseJournalLine(line);
    call.tick = host.timeline.tick;
    const int64_t number = ++TheFrameworkLog().callCount[call.operation];
    const bool isRunning = TheFrameworkLog().activationBegan.has_value();
    const bool isFaulty = TheFrameworkLog().answersLeft.take(call.operation, number);
    if (isFaulty) host.countFailure(call.operation);
    CheckBuffers(host, call);
    Event entry = host.timeline.event(EventKind::entry, Actor::framework);
    entry.text = call.text;
    entry.call = {call.operation, call.fields};
    host.timeline.add(std::move(entry));
    TheFrameworkLog().rules.take(call.operation, call.fields, isFaulty, isRunning);
    TheFrameworkLog().calls.push_back(std::move(call));
  }
}

}  // namespace

FrameworkLog& TheFrameworkLog() {
  static FrameworkLog& log = *new FrameworkLog;
  return log;
}

void FollowJournal(Host& host) {
  const int journal = open("journal", O_RDONLY | O_CREAT | O_CLOEXEC, 0600);
  if (journal < 0) throw std::runtime_error("can't open journal");
  TheFrameworkLog().journal.follow(journal);
  host.timeline.addSource([&host] { TakeJournal(host); });
  host.afterTick = [&host] { EndActivation(host.timeline); };
  host.timeline.addObserver([&timeline = host.timeline](const Event& entry) {
    FollowActivation(timeline, entry);
    FollowEnabled(timeline, entry);
  });
  host.timeline.setState(kActivation, "0");
  TheFrameworkLog().rules.begin(host);
}

void Settle(Host& host) {
  const std::string answers = host.inFolder("framework-answers");
  const std::vector<std::string> kept = ReadLines(answers);
  const AnswersLeft left = std::exchange(TheFrameworkLog().answersLeft, {});
  WriteLines(answers, {});
  TheFrameworkLog().rules.settle();
  WriteLines(answers, kept);
  TheFrameworkLog().answersLeft = left;
}

void CheckAnswersLeft(Host& host) {
  if (host.settings().tolerant) return;
  for (const auto& [operation, count] : TheFrameworkLog().answersLeft.counts()) {
    if (count == 0) continue;
    host.report(Finding::setup,
                fmt::format("{} answer(s) of {} were never asked for", count, operation));
  }
}

}  // namespace host
