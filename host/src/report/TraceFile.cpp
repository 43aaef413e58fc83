#include "TraceFile.h"

#include <algorithm>
#include <charconv>

#include "TextFile.h"

namespace host {
namespace {

// Virtual time stands still in most sessions, so that a trace shows ticks. The host idles about 30
// times a second.
constexpr int64_t kMicrosecondsPerTick = 33'333;

int64_t TrackOf(Actor actor) {
  return static_cast<int64_t>(actor) + 1;
}

Json ArgumentsOf(const Event& event) {
  Json arguments{{"step", event.step}, {"place", event.place}, {"tick", event.tick}};
  if (event.kind == EventKind::expectation && !event.met) {
    arguments["difference"] = event.difference;
  }
  if (event.call.function.empty()) return arguments;
  arguments["call"] = event.call.function;
  Json& passed = arguments["arguments"] = Json::array();
  for (const Argument& argument : event.call.arguments) {
    passed.push_back(argument.name + "=" + argument.value);
  }
  return arguments;
}

}  // namespace

TraceFile::TraceFile(const std::string& path) : mFile(path) {
  mFile.write("[");
}

void TraceFile::begin(const SessionInfo& session) {
  ++mSession;
  mTick = 0;
  mTime = 0;
  Json process = record("M", "process_name");
  process["args"] = {{"name", session.name}};
  write(process);
  for (size_t i = 0; i < kActors.size(); ++i) {
    const auto actor = static_cast<Actor>(i);
    Json name = record("M", "thread_name", actor);
    name["args"] = {{"name", kActors[i]}};
    write(name);
    Json place = record("M", "thread_sort_index", actor);
    place["args"] = {{"sort_index", i}};
    write(place);
  }
}

void TraceFile::take(const Event& event) {
  const int64_t start = event.tick * kMicrosecondsPerTick;
  const int64_t last = start + kMicrosecondsPerTick - 1;
  mTime = event.tick == mTick ? std::min(mTime + 1, last) : start;
  mTick = event.tick;
  if (event.kind == EventKind::state) return writeCounter(event);
  if (event.kind == EventKind::begin || event.kind == EventKind::end) {
    return write(record(event.kind == EventKind::begin ? "B" : "E", event.name, event.actor));
  }
  // The arguments of a framework call are long, and the trace has them anyway.
  const bool isFrameworkCall = event.actor == Actor::framework && !event.call.function.empty();
  Json instant = record("i", isFrameworkCall ? event.call.function : event.text, event.actor);
  instant["s"] = "t";
  instant["args"] = ArgumentsOf(event);
  write(instant);
}

void TraceFile::end(const SessionInfo& /*session*/, const Played& /*played*/) {
  mFile.flush();
}

void TraceFile::finish() {
  mFile.write("\n]\n");
  mFile.flush();
}

Json TraceFile::record(std::string_view phase, std::string_view name) const {
  return {{"ph", phase}, {"name", name}, {"ts", mTime}, {"pid", mSession}};
}

Json TraceFile::record(std::string_view phase, std::string_view name, Actor actor) const {
  Json json = record(phase, name);
  json["tid"] = TrackOf(actor);
  return json;
}

// A counter takes numbers alone.
void TraceFile::writeCounter(const Event& state) {
  int64_t number = state.value == "true" ? 1 : 0;
  const bool isFlag = state.value == "true" || state.value == "false";
  const char* const end = state.value.data() + state.value.size();
  if (!isFlag && std::from_chars(state.value.data(), end, number).ptr != end) return;
  Json counter = record("C", state.name);
  counter["args"] = {{state.name, number}};
  write(counter);
}

void TraceFile::write(const Json& record) {
  mFile.write((mWritten ? ",\n" : "\n") + Dump(record));
  mWritten = true;
}

}  // namespace host
