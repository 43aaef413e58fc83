#include "Timeline.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <utility>

#include "Comparison.h"

namespace host {
namespace {

// Makes `stream`, whose descriptor is `descriptor`, write to `file` at once: what stands in a
// buffer is lost in a crash. Returns a descriptor to read from.
int Redirect(const char* file, std::FILE* stream, int descriptor) {
  const int output = open(file, O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
  if (output < 0 || dup2(output, descriptor) < 0) {
    throw std::runtime_error(fmt::format("can't open {}", file));
  }
  std::setvbuf(stream, nullptr, _IONBF, 0);
  return output;
}

// On whose part of the timeline it runs.
Actor ActorOf(SpanKind kind) {
  return kind == SpanKind::hook ? Actor::plugIn : Actor::host;
}

// Shows pointers without their value, which is another in every run.
struct ShowValue {
  std::string operator()(int64_t number) const { return fmt::format("{}", number); }
  std::string operator()(double number) const { return fmt::format("{}", number); }
  std::string operator()(const char* text) const { return text ? text : "null"; }
  std::string operator()(const void* pointer) const { return pointer ? "pointer" : "null"; }
};

}  // namespace

std::string StdoutText(std::string_view line) {
  return fmt::format("prints: {}", line);
}

std::string StderrText(std::string_view line) {
  return fmt::format("writes to standard error: {}", line);
}

void Timeline::begin(const Wire& wire, FlightRecord& flight) {
  mWire = &wire;
  mFlight = &flight;
  mFolderPrefix = std::filesystem::current_path().string() + "/";
  std::fflush(nullptr);
  mStdout.follow(Redirect(kStdoutFile, stdout, STDOUT_FILENO));
  mStderr.follow(Redirect(kStderrFile, stderr, STDERR_FILENO));
}

void Timeline::add(Actor actor, std::string_view text) {
  drain();
  show(actor, text, call ? describe(*call) : Call());
}

void Timeline::addCall(const RunningCall& running, int64_t result, bool isSupplied) {
  drain();
  sendBegins();
  Event entry = event(EventKind::entry, Actor::plugIn);
  entry.call = describe(running);
  std::string arguments;
  for (const Argument& argument : entry.call.arguments) {
    arguments += (arguments.empty() ? "" : ", ") + argument.value;
  }
  entry.text = fmt::format("calls {}({}): {}", running.function, arguments, result);
  entry.result = result;
  entry.isSupplied = isSupplied;
  send(entry);
}

void Timeline::addExpectation(std::string_view key, std::string_view place,
                              std::string_view difference) {
  sendBegins();
  Event added = event(EventKind::expectation, Actor::session);
  added.name = key;
  added.met = difference.empty();
  added.text = ExpectationText(added.name, added.met);
  added.where = place;
  added.difference = difference;
  send(added);
}

void Timeline::tell(EventKind kind, std::string text) const {
  Event told = event(kind, Actor::session);
  told.text = std::move(text);
  send(told);
}

void Timeline::addFact(Event fact) {
  drain();
  sendBegins();
  for (std::string* const text : {&fact.text, &fact.names.value, &fact.where}) shortenPaths(*text);
  send(fact);
}

void Timeline::drain() {
  // Not all streams: a thread of the plug-in's may wait for one, and hold it.
  std::fflush(stdout);
  std::fflush(stderr);
  takeLines(mStdout.newLines(), mStderr.newLines());
  for (const auto& source : mSources) source();
}

void Timeline::drainRest() {
  drain();
  const auto lineOf = [](std::string rest) {
    return rest.empty() ? std::vector<std::string>() : std::vector{std::move(rest)};
  };
  takeLines(lineOf(mStdout.takeRest()), lineOf(mStderr.takeRest()));
}

void Timeline::takeLines(const std::vector<std::string>& out, const std::vector<std::string>& err) {
  if (out.empty() && err.empty()) return;
  // Making entries of what it printed isn't the plug-in's work.
  const WatchdogPause pause(*mFlight);
  for (const std::string& line : out) takeStdoutLine(line);
  for (const std::string& line : err) takeStderrLine(line);
  mFlight->stdoutTaken = mStdout.taken();
  mFlight->stderrTaken = mStderr.taken();
}

void Timeline::show(Actor actor, std::string_view text, Call comesFrom) {
  sendBegins();
  Event entry = event(EventKind::entry, actor);
  entry.text = text;
  shortenPaths(entry.text);
  entry.call = std::move(comesFrom);
  send(entry);
  for (const auto& observer : mObservers) observer(entry);
}

void Timeline::setState(const std::string& name, std::string value) {
  shortenPaths(value);
  if (const auto known = mStates.find(name); known != mStates.end() && known->second == value) {
    return;
  }
  mStates[name] = value;
  sendBegins();
  Event state = event(EventKind::state, Actor::host);
  state.name = name;
  state.value = std::move(value);
  send(state);
}

void Timeline::beginStep(std::string_view place) {
  mPlace = place;
}

void Timeline::beginHook(std::string_view name) {
  mSpans.push_back({SpanKind::hook, std::string(name), false, std::exchange(call, nullptr)});
}

void Timeline::beginDialog(std::string_view title) {
  mSpans.push_back({SpanKind::dialog, std::string(title), false, call});
  sendBegins();
}

void Timeline::endLast(Shown shown) {
  const Span span = std::move(mSpans.back());
  mSpans.pop_back();
  call = span.outerCall;
  if (!span.sent) return;
  Event end = event(EventKind::end, ActorOf(span.kind));
  end.span = span.kind;
  end.name = span.name;
  end.shown = shown;
  send(end);
}

void Timeline::endAll() {
  while (!mSpans.empty()) endLast();
}

EventHead Timeline::head(Actor actor) const {
  EventHead head = headWithin(mSpans.size(), actor);
  if (call) head.call = describe(*call);
  return head;
}

EventHead Timeline::headWithin(size_t spans, Actor actor) const {
  EventHead head;
  if (!mPlace.empty()) head.step = mFlight->stepNumber;
  head.place = mPlace;
  head.tick = tick;
  head.time = mFlight->time;
  head.actor = actor;
  for (size_t i = 0; i < spans; ++i) {
    if (mSpans[i].kind == SpanKind::hook) head.hook = mSpans[i].name;
  }
  return head;
}

Event Timeline::event(EventKind kind, Actor actor, size_t spans) const {
  Event event(headWithin(spans, actor));
  event.kind = kind;
  return event;
}

Call Timeline::describe(const RunningCall& running) const {
  Call described;
  described.function = running.function;
  for (size_t i = 0; i < running.count; ++i) {
    std::string value = std::visit(ShowValue(), running.arguments[i]);
    shortenPaths(value);
    described.arguments.push_back({std::to_string(i + 1), std::move(value)});
  }
  return described;
}

void Timeline::sendBegins() {
  for (size_t i = 0; i < mSpans.size(); ++i) {
    Span& span = mSpans[i];
    if (std::exchange(span.sent, true)) continue;
    Event begin = event(EventKind::begin, ActorOf(span.kind), i);
    begin.span = span.kind;
    begin.name = span.name;
    send(begin);
  }
}

void Timeline::send(const Event& event) const {
  mWire->send(event);
}

void Timeline::takeStdoutLine(const std::string& line) {
  record.stdoutLines.push_back(line);
  show(Actor::plugIn, StdoutText(line));
}

void Timeline::takeStderrLine(const std::string& line) {
  record.stderrLines.push_back(line);
  show(Actor::plugIn, StderrText(line));
}

}  // namespace host
