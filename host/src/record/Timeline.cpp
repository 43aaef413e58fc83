#include "Timeline.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>
#include <ext/stdio_sync_filebuf.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <utility>

namespace host {
namespace {

// Where a stream of this process writes.
struct Target {
  Timeline* timeline = nullptr;
  size_t output = 0;
  int descriptor = -1;
};

ssize_t WriteTo(void* cookie, const char* bytes, size_t size) {
  const auto& target = *static_cast<const Target*>(cookie);
  target.timeline->beginOutput(target.output);
  return std::max(ssize_t{0}, write(target.descriptor, bytes, size));
}

// Returns a stream that lasts as long as the process, and that writes at once: what stands in a
// buffer is lost in a crash.
std::FILE* MakeStream(const Target& target) {
  // Not on the heap: a leak check doesn't see that the stream refers to it.
  static std::array<Target, kOutputs.size()> targets;
  Target& own = targets.at(target.output) = target;
  std::FILE* const stream = fopencookie(&own, "w", {nullptr, WriteTo, nullptr, nullptr});
  std::setvbuf(stream, nullptr, _IONBF, 0);
  // For `fileno`.
  stream->_fileno = target.descriptor;
  return stream;
}

}  // namespace

std::string TextOf(const RunningCall::Value& value) {
  if (const auto* const number = std::get_if<int64_t>(&value)) return std::to_string(*number);
  if (const auto* const real = std::get_if<double>(&value)) return fmt::format("{}", *real);
  if (const auto* const text = std::get_if<const char*>(&value)) return *text ? *text : "null";
  return std::get<const void*>(value) ? "pointer" : "null";
}

void Timeline::begin(int pipe, FlightRecord& flight) {
  mPipe = pipe;
  mFlight = &flight;
  mFolderPrefix = std::filesystem::current_path().string() + "/";
  std::fflush(nullptr);
  constexpr std::array kDescriptors{STDOUT_FILENO, STDERR_FILENO};
  std::array<std::FILE**, 2> streams{&stdout, &stderr};
  for (size_t i = 0; i < kOutputs.size(); ++i) {
    const int file = open(kOutputs[i].file, O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    if (file < 0 || dup2(file, kDescriptors[i]) < 0) {
      throw std::runtime_error(fmt::format("can't open {}", kOutputs[i].file));
    }
    mOutputs[i].follow(file);
    // The wide streams of C++ keep the one that was there before.
    std::setvbuf(*streams[i], nullptr, _IONBF, 0);
    *streams[i] = MakeStream({this, i, kDescriptors[i]});
  }
  std::cout.rdbuf(new __gnu_cxx::stdio_sync_filebuf<char>(stdout));
  std::cerr.rdbuf(new __gnu_cxx::stdio_sync_filebuf<char>(stderr));
  std::clog.rdbuf(std::cerr.rdbuf());
}

Event Timeline::event(EventKind kind, Actor actor) const {
  Event event(kind, HeadOf(*mFlight));
  event.place = mFlight->step.data();
  event.actor = actor;
  return event;
}

void Timeline::add(Event event) {
  drain();
  sendBegins();
  shortenPaths(event.value);
  send(event);
  if (event.kind == EventKind::entry) observer(event);
}

void Timeline::add(Actor actor, std::string_view text) {
  Event entry = event(EventKind::entry, actor);
  entry.text = text;
  entry.call = runningCall();
  add(std::move(entry));
}

void Timeline::addCall(const RunningCall& running, int64_t result) {
  Event entry = event(EventKind::entry, Actor::plugIn);
  entry.call = describe(running);
  std::vector<std::string> values;
  for (const Argument& argument : entry.call.arguments) values.push_back(argument.value);
  entry.text = fmt::format("calls {}({}): {}", running.function, Join(values, ", "), result);
  entry.result = result;
  add(std::move(entry));
}

void Timeline::addExpectation(std::string_view key, std::string_view place, std::string difference,
                              std::optional<std::vector<std::string>> texts) {
  Event expectation = event(EventKind::expectation, Actor::session);
  expectation.name = key;
  expectation.where = place;
  expectation.difference = std::move(difference);
  expectation.texts = std::move(texts);
  add(std::move(expectation));
}

void Timeline::setState(const std::string& name, std::string value) {
  shortenPaths(value);
  if (const auto known = mStates.find(name); known != mStates.end() && known->second == value) {
    return;
  }
  mStates[name] = value;
  Event state = event(EventKind::state, Actor::host);
  state.name = name;
  state.value = std::move(value);
  add(std::move(state));
}

void Timeline::tell(EventKind kind, std::string_view text) const {
  Event told = event(kind, Actor::session);
  told.text = text;
  send(told);
}

void Timeline::send(const Event& event) const {
  if (mPipe < 0 || mFlight->isOfFork) return;
  const std::string bytes = Dump(ToJson(event)) + "\n";
  const WatchdogPause pause(*mFlight);
  const std::lock_guard lock(mPipeMutex);
  WriteAll(mPipe, bytes);
}

void Timeline::drain() {
  if (std::exchange(mDraining, true)) return;
  // Not all streams: a thread of the plug-in's may wait for one, and hold it.
  std::fflush(stdout);
  std::fflush(stderr);
  takeOutputs();
  source();
  mDraining = false;
}

void Timeline::beginOutput(size_t output) {
  const bool isOther = mLastOutput.exchange(output) != output;
  if (!isOther || mFlight->isOfFork || gettid() != getpid()) return;
  if (std::exchange(mDraining, true)) return;
  takeOutputs();
  mDraining = false;
}

void Timeline::takeOutputs() {
  for (size_t i = 0; i < mOutputs.size(); ++i) takeLines(i, mOutputs[i].newLines());
}

void Timeline::takeLines(size_t output, const std::vector<std::string>& lines) {
  if (lines.empty()) return;
  // Making entries of what it printed isn't the plug-in's work.
  const WatchdogPause pause(*mFlight);
  for (const std::string& line : lines) {
    Event entry = event(EventKind::entry, Actor::plugIn);
    entry.text = kOutputs[output].says + line;
    add(std::move(entry));
    (output == 0 ? record.stdoutLines : record.stderrLines).push_back(line);
  }
  mFlight->outputTaken[output] = mOutputs[output].taken();
}

void Timeline::beginHook(std::string_view name) {
  mSpans.push_back({Actor::plugIn, kHook, std::string(name), mFlight->hook, call});
  call = nullptr;
}

void Timeline::beginDialog(std::string_view title) {
  mSpans.push_back({Actor::host, kDialog, std::string(title), mFlight->hook, call});
  sendBegins();
}

void Timeline::endLast(std::optional<bool> shown) {
  const Span span = std::move(mSpans.back());
  mSpans.pop_back();
  call = span.outerCall;
  if (!span.isSent) return;
  Event end = spanEvent(EventKind::end, span);
  end.shown = shown;
  send(end);
}

void Timeline::endAll() {
  while (!mSpans.empty()) endLast();
}

void Timeline::sendBegins() {
  for (Span& span : mSpans) {
    if (!std::exchange(span.isSent, true)) send(spanEvent(EventKind::begin, span));
  }
}

Event Timeline::spanEvent(EventKind kind, const Span& span) const {
  Event event = this->event(kind, span.actor);
  event.what = span.what;
  event.name = span.name;
  event.hook = span.outerHook;
  return event;
}

Call Timeline::describe(const RunningCall& running) const {
  Call described{std::string(running.function), {}};
  for (size_t i = 0; i < running.count; ++i) {
    std::string value = TextOf(running.arguments[i]);
    shortenPaths(value);
    described.arguments.push_back({std::to_string(i + 1), std::move(value)});
  }
  return described;
}

}  // namespace host
