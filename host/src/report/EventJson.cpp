#include "EventJson.h"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace host {
namespace {

constexpr std::array<std::string_view, 5> kKinds{"entry", "expectation", "begin", "end", "state"};
constexpr std::array<std::string_view, 2> kSpans{"hook", "dialog"};

template <typename Value, size_t size>
Value Named(const std::array<std::string_view, size>& names, const std::string& name) {
  const auto found = std::find(names.begin(), names.end(), name);
  if (found == names.end()) throw std::runtime_error("unknown name " + name);
  return static_cast<Value>(found - names.begin());
}

void AddCall(const Call& call, Json& json) {
  if (call.function.empty()) return;
  json["call"] = call.function;
  Json& arguments = json["arguments"] = Json::array();
  for (const Argument& argument : call.arguments) {
    arguments.push_back({{"name", argument.name}, {"value", argument.value}});
  }
}

Call CallFrom(const Json& json) {
  Call call;
  call.function = json.value("call", "");
  if (call.function.empty()) return call;
  for (const Json& argument : json.at("arguments")) {
    call.arguments.push_back({argument.at("name"), argument.at("value")});
  }
  return call;
}

void AddSpan(const Event& event, Json& json) {
  json["what"] = kSpans[static_cast<size_t>(event.span)];
  json["name"] = event.name;
  if (event.shown != Shown::unknown) json["shown"] = event.shown == Shown::yes;
}

void SpanFrom(const Json& json, Event& event) {
  event.span = Named<SpanKind>(kSpans, json.at("what"));
  event.name = json.at("name");
  if (json.contains("shown")) event.shown = json.at("shown") ? Shown::yes : Shown::no;
}

}  // namespace

Json ToJson(const Event& event) {
  Json json{{"kind", kKinds[static_cast<size_t>(event.kind)]}, {"step", event.step}};
  if (!event.place.empty()) json["place"] = event.place;
  json["tick"] = event.tick;
  json["time"] = event.time;
  if (event.kind != EventKind::state) json["actor"] = NameOf(event.actor);
  if (!event.hook.empty()) json["hook"] = event.hook;
  switch (event.kind) {
    case EventKind::entry:
      json["text"] = event.text;
      AddCall(event.call, json);
      break;
    case EventKind::expectation:
      json["text"] = event.text;
      json["key"] = event.name;
      json["met"] = event.met;
      if (!event.met) json["difference"] = event.difference;
      break;
    case EventKind::begin:
    case EventKind::end:
      AddSpan(event, json);
      break;
    case EventKind::state:
      json["name"] = event.name;
      json["value"] = event.value;
      break;
  }
  return json;
}

Event EventFrom(const Json& json) {
  Event event;
  event.kind = Named<EventKind>(kKinds, json.at("kind"));
  event.step = json.at("step");
  event.place = json.value("place", "");
  event.tick = json.at("tick");
  event.time = json.at("time");
  if (event.kind != EventKind::state) event.actor = Named<Actor>(kActors, json.at("actor"));
  event.hook = json.value("hook", "");
  switch (event.kind) {
    case EventKind::entry:
      event.text = json.at("text");
      event.call = CallFrom(json);
      break;
    case EventKind::expectation:
      event.text = json.at("text");
      event.name = json.at("key");
      event.met = json.at("met");
      event.difference = json.value("difference", "");
      break;
    case EventKind::begin:
    case EventKind::end:
      SpanFrom(json, event);
      break;
    case EventKind::state:
      event.name = json.at("name");
      event.value = json.at("value");
      break;
  }
  return event;
}

std::string Dump(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace host
