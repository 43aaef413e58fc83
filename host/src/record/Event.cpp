#include "Event.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string_view>

namespace host {
namespace {

template <typename Value>
Value ValueNamed(const auto& names, const Json& name) {
  const auto found = std::find(names.begin(), names.end(), name.get<std::string_view>());
  if (found == names.end()) throw std::runtime_error("unknown name " + name.dump());
  return static_cast<Value>(found - names.begin());
}

template <typename Value>
Json ToJson(const Value& value) {
  return value;
}

template <typename Value>
Json ToJson(const std::optional<Value>& value) {
  return *value;
}

Json ToJson(const std::vector<Argument>& arguments) {
  Json json = Json::array();
  for (const auto& [name, value] : arguments) json.push_back({{"name", name}, {"value", value}});
  return json;
}

template <typename Value>
void Read(const Json& json, Value& value) {
  value = json.get<Value>();
}

template <typename Value>
void Read(const Json& json, std::optional<Value>& value) {
  value = json.get<Value>();
}

void Read(const Json& json, std::vector<Argument>& arguments) {
  for (const Json& each : json) arguments.push_back({each.at("name"), each.at("value")});
}

// Visits each other member with its key, in the order of the format. The third argument says
// whether each object has the key. Otherwise it is left out while the member has its default.
template <typename AnyEvent, typename Visit>
void ForEachMember(AnyEvent& event, const Visit& visit) {
  visit("step", event.step, true);
  visit("place", event.place, false);
  visit("tick", event.tick, true);
  visit("time", event.time, true);
  visit("hook", event.hook, false);
  visit("what", event.what, false);
  visit("name", event.name, false);
  visit("value", event.value, false);
  visit("shown", event.shown, false);
  visit("text", event.text, false);
  visit("where", event.where, false);
  visit("difference", event.difference, false);
  visit("call", event.call.function, false);
  visit("arguments", event.call.arguments, false);
  visit("result", event.result, false);
  visit("function", event.function, false);
  visit("detail", event.detail, false);
  visit("visit", event.visit, false);
  visit("texts", event.texts, false);
}

Event EventFrom(const Json& json) {
  Event event(ValueNamed<EventKind>(kEventKinds, json.at("kind")));
  if (json.contains("actor")) event.actor = ValueNamed<Actor>(kActors, json["actor"]);
  ForEachMember(event, [&](const char* key, auto& member, bool /*isAlwaysThere*/) {
    if (const auto value = json.find(key); value != json.end()) Read(*value, member);
  });
  return event;
}

}  // namespace

const std::string* FindLast(const std::vector<Argument>& arguments, std::string_view name) {
  const auto found = std::find_if(arguments.rbegin(), arguments.rend(),
                                  [&](const Argument& each) { return each.name == name; });
  return found == arguments.rend() ? nullptr : &found->value;
}

const FindingKind& KindOf(const Event& fact) {
  return KindOf(FindingNamed(fact.name).value());
}

Json ToJson(const Event& event) {
  Json json{{"kind", kEventKinds[static_cast<size_t>(event.kind)]}};
  if (event.kind != EventKind::state) json["actor"] = NameOf(event.actor);
  ForEachMember(event, [&](const char* key, const auto& member, bool isAlwaysThere) {
    if (isAlwaysThere || member != std::decay_t<decltype(member)>{}) json[key] = ToJson(member);
  });
  if (event.kind == EventKind::expectation) json["met"] = event.isMet();
  return json;
}

std::string Dump(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::vector<Event> TakeEvents(std::string& bytes) {
  std::vector<Event> events;
  size_t begin = 0;
  for (size_t end = 0; (end = bytes.find('\n', begin)) != std::string::npos; begin = end + 1) {
    events.push_back(EventFrom(Json::parse(std::string_view(bytes).substr(begin, end - begin))));
  }
  bytes.erase(0, begin);
  return events;
}

}  // namespace host
