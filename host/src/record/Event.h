#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Findings.h"

namespace host {

enum class Actor { user, host, plugIn, framework, desktop, session };

/// The names of the actors, in the order of the enumeration.
inline constexpr std::array<std::string_view, 6> kActors{"user",      "host",    "plug-in",
                                                         "framework", "desktop", "session"};

constexpr std::string_view NameOf(Actor actor) {
  return kActors[static_cast<size_t>(actor)];
}

/// An argument or a result of a call.
struct Argument {
  std::string name;  ///< the position, from "1", if the call doesn't name its arguments
  std::string value;

  bool operator==(const Argument&) const = default;
};

/// Returns the value of the argument, or null. An in-out argument comes twice, and its later value
/// counts.
const std::string* FindLast(const std::vector<Argument>& arguments, std::string_view name);

/// A call by the plug-in: of the host, or of the framework.
struct Call {
  std::string function;             ///< empty for no call
  std::vector<Argument> arguments;  ///< none if the process ended within the call
};

enum class EventKind {
  // What a reader of the timeline sees.
  entry,        ///< a line of the timeline
  expectation,  ///< one key of an `expect`
  begin,        ///< a hook in which something happens, or the modal session of a dialog, begins
  end,          ///< the latest of them that still runs ends
  state,        ///< a value from now on
  finding,      ///< what is wrong, at the end of a session
  // Facts for the judge.
  fact,     ///< something that is a finding unless the session or the user says otherwise
  answer,   ///< a function of the host has answered an error
  failure,  ///< a call fails because the session wants it
  // How far the process is.
  unloadable,  ///< the plug-in's module can't be loaded
  played,      ///< all steps were played
  finished,    ///< all modules are finalised, and the host has checked for leaks
};

/// The names of the kinds, in the order of the enumeration.
inline constexpr std::array<std::string_view, 12> kEventKinds{
    "entry", "expectation", "begin",   "end",        "state",  "finding",
    "fact",  "answer",      "failure", "unloadable", "played", "finished"};

/// What begins and ends.
inline constexpr char kHook[] = "hook";
inline constexpr char kDialog[] = "dialog";

/// Where in a session something happens, and by whom.
struct EventHead {
  int64_t step = 0;   ///< counts from 1; 0 before the first step
  std::string place;  ///< of the step in the session file; empty before the first step
  int64_t tick = 0;
  int64_t time = 0;  ///< virtual, in seconds since 1970
  Actor actor = Actor::host;
  std::string hook;  ///< that is running; empty in the host itself
  Call call;         ///< for an entry, a fact or a finding, if it comes from one
};

/// What is known of a fact by names, so that nobody has to look for words in its text.
struct FactNames {
  std::string function;  ///< that was called, or gave what is left
  std::string detail;    ///< an argument, a circumstance or the like
  std::string value;     ///< by which an `expect` names it; of a state, its value

  bool operator==(const FactNames&) const = default;
};

/// Something that happens in a session, as the process that plays it tells. Each member is a key of
/// the lines that the other process reads. Those that the judge passes on are also lines of the
/// JSON file that users read. A finding gets only the head, the name and the text of its fact.
struct Event : EventHead, FactNames {
  Event() = default;
  explicit Event(EventKind ofKind, EventHead head = {})
      : EventHead(std::move(head)), kind(ofKind) {}

  /// Whether it is an expectation that is met.
  bool isMet() const { return kind == EventKind::expectation && difference.empty(); }

  EventKind kind = EventKind::entry;
  std::string name;  ///< of a hook, dialog, state, fact or finding; the key of an expectation
  /// Of an entry, expectation, fact or finding; why unloadable; the call that fails. The first
  /// line of a fact says what happens, and the others where.
  std::string text;

  // Of a begin or end.
  std::string what;           ///< `kHook` or `kDialog`
  std::optional<bool> shown;  ///< of the end of a dialog: whether the user saw it, if known

  // Of an expectation.
  std::string where;       ///< its place in the file
  std::string difference;  ///< why it isn't met; has several lines
  /// That the facts which the key is about have to have, if the judge is to compare.
  std::optional<std::vector<std::string>> texts;

  // Of an answer or a fact. Of an entry that shows a call of the host, only the result.
  std::optional<int64_t> result;  ///< that the host has answered, or an error that the user saw
  int64_t visit = 0;              ///< counts the calls of the plug-in by the host
};

/// Returns what is known of the finding that a fact or finding has as its name. Throws
/// `std::bad_optional_access` if there is no such one.
const FindingKind& KindOf(const Event& fact);

using Json = nlohmann::ordered_json;

/// Returns the event as an object, with its keys in the order of the format.
Json ToJson(const Event& event);
/// Returns the value on one line. Bytes that aren't UTF-8 become U+FFFD.
std::string Dump(const Json& json);
/// Takes the events out of lines of objects, and leaves there what isn't whole. Throws
/// `std::exception` for a line that isn't an object of this format.
std::vector<Event> TakeEvents(std::string& bytes);

}  // namespace host
