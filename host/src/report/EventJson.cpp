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
  if (!call.argumentsKnown) return;
  Json& arguments = json["arguments"] = Json::array();
  for (const Argument& argument : call.arguments) {
    arguments.push_back({{"name", argument.name}, {"value", argument.value}});
  }
}

Call CallFrom(const Json& json) {
  Call call;
  call.function = json.value("call", "");
  call.argumentsKnown = call.function.empty() || json.contains("arguments");
  if (call.function.empty() || !call.argumentsKnown) return call;
  for (const Json& argument : json.at("arguments")) {
    call.arguments.push_back({argument.at("name"), argument.at("value")});
  }
  return call;
}

// Without the call, which comes last.
void AddHead(const EventHead& head, bool hasActor, Json& json) {
  json["step"] = head.step;
  if (!head.place.empty()) json["place"] = head.place;
  json["tick"] = head.tick;
  json["time"] = head.time;
  if (hasActor) json["actor"] = NameOf(head.actor);
  if (!head.hook.empty()) json["hook"] = head.hook;
}

EventHead HeadFrom(const Json& json) {
  EventHead head;
  head.step = json.at("step");
  head.place = json.value("place", "");
  head.tick = json.at("tick");
  head.time = json.at("time");
  if (json.contains("actor")) head.actor = Named<Actor>(kActors, json.at("actor"));
  head.hook = json.value("hook", "");
  head.call = CallFrom(json);
  return head;
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
  Json json{{"kind", kKinds[static_cast<size_t>(event.kind)]}};
  AddHead(event, event.kind != EventKind::state, json);
  switch (event.kind) {
    case EventKind::entry:
      json["text"] = event.text;
      AddCall(event.call, json);
      if (event.result) json["result"] = *event.result;
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
  Event event(HeadFrom(json));
  event.kind = Named<EventKind>(kKinds, json.at("kind"));
  switch (event.kind) {
    case EventKind::entry:
      event.text = json.at("text");
      if (json.contains("result")) event.result = json.at("result");
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

Json ToJson(const FoundInSession& found) {
  const FindingKind& kind = KindOf(found.finding);
  Json json{{"kind", "finding"}};
  AddHead(found.head, true, json);
  json["name"] = kind.name;
  json["level"] = kind.level == Level::error ? "error" : "warning";
  json["text"] = found.text;
  AddCall(found.head.call, json);
  return json;
}

std::string ToReport(const FoundInSession& found) {
  Json json = ToJson(found);
  json.erase("text");
  return Dump(json) + "\n" + found.text;
}

FoundInSession FoundFrom(std::string_view report) {
  const size_t end = report.find('\n');
  const Json json = Json::parse(report.substr(0, end));
  const std::string name = json.at("name");
  return {FindingNamed(name).value(), std::string(report.substr(end + 1)), HeadFrom(json)};
}

std::string Dump(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace host
