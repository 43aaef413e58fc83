#include "EventJson.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>
#include <vector>

namespace host {
namespace {

constexpr std::array<std::string_view, 13> kKinds{
    "entry",   "expectation", "begin",      "end",    "state",      "fact",    "answer",
    "failure", "expect",      "unloadable", "played", "destroying", "finished"};
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

void AddFact(const Event& event, Json& json) {
  json["text"] = event.text;
  json["name"] = KindOf(event.finding).name;
  json["function"] = event.names.function;
  json["detail"] = event.names.detail;
  json["value"] = event.names.value;
  json["where"] = event.where;
  json["code"] = event.code;
  json["visit"] = event.visit;
  AddCall(event.call, json);
}

void FactFrom(const Json& json, Event& event) {
  event.text = json.at("text");
  event.finding = FindingNamed(json.at("name").get<std::string>()).value();
  event.names = {json.at("function"), json.at("detail"), json.at("value")};
  event.where = json.at("where");
  event.code = json.at("code");
  event.visit = json.at("visit");
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
      if (!event.isSupplied) json["supplied"] = false;
      break;
    case EventKind::expectation:
      json["text"] = event.text;
      json["key"] = event.name;
      json["met"] = event.met;
      if (!event.met) {
        json["where"] = event.where;
        json["difference"] = event.difference;
      }
      break;
    case EventKind::begin:
    case EventKind::end:
      AddSpan(event, json);
      break;
    case EventKind::state:
      json["name"] = event.name;
      json["value"] = event.value;
      break;
    case EventKind::fact:
      AddFact(event, json);
      break;
    case EventKind::answer:
      json["code"] = event.code;
      json["visit"] = event.visit;
      break;
    case EventKind::failure:
      json["name"] = event.name;
      break;
    case EventKind::expect:
      json["name"] = event.name;
      json["where"] = event.where;
      json["texts"] = event.texts;
      break;
    case EventKind::unloadable:
      json["text"] = event.text;
      break;
    case EventKind::played:
    case EventKind::destroying:
    case EventKind::finished:
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
      event.isSupplied = json.value("supplied", true);
      break;
    case EventKind::expectation:
      event.text = json.at("text");
      event.name = json.at("key");
      event.met = json.at("met");
      event.where = json.value("where", "");
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
    case EventKind::fact:
      FactFrom(json, event);
      break;
    case EventKind::answer:
      event.code = json.at("code");
      event.visit = json.at("visit");
      break;
    case EventKind::failure:
      event.name = json.at("name");
      break;
    case EventKind::expect:
      event.name = json.at("name");
      event.where = json.at("where");
      event.texts = json.at("texts").get<std::vector<std::string>>();
      break;
    case EventKind::unloadable:
      event.text = json.at("text");
      break;
    case EventKind::played:
    case EventKind::destroying:
    case EventKind::finished:
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

std::string Dump(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace host
