#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

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
};

/// Returns the value of the argument, or null. An in-out argument comes twice, and its later value
/// counts.
inline const std::string* FindLast(const std::vector<Argument>& arguments, std::string_view name) {
  const auto found = std::find_if(arguments.rbegin(), arguments.rend(),
                                  [&](const Argument& each) { return each.name == name; });
  return found == arguments.rend() ? nullptr : &found->value;
}

/// A call by the plug-in: of the host, or of the framework.
struct Call {
  std::string function;  ///< empty for no call
  std::vector<Argument> arguments;
  bool argumentsKnown = true;
};

enum class EventKind {
  entry,        ///< a line of the timeline
  expectation,  ///< one key of an `expect`
  begin,        ///< a hook in which something happens, or the modal session of a dialog, begins
  end,          ///< the latest of them that still runs ends
  state,        ///< a value from now on
};

enum class SpanKind { hook, dialog };

/// What the user of a dialog saw of it.
enum class Shown { unknown, no, yes };

/// Where in a session something happens, and by whom.
struct EventHead {
  int64_t step = 0;   ///< counts from 1; 0 before the first step
  std::string place;  ///< of the step in the session file; empty before the first step
  int64_t tick = 0;
  int64_t time = 0;  ///< virtual, in seconds since 1970
  Actor actor = Actor::host;
  std::string hook;  ///< that is running; empty in the host itself
  Call call;         ///< for an entry or a finding, if it comes from one
};

/// Something that happens in a session.
struct Event : EventHead {
  Event() = default;
  explicit Event(EventHead head) : EventHead(std::move(head)) {}

  EventKind kind = EventKind::entry;
  std::string text;               ///< of an entry or expectation; may hold control characters
  std::optional<int64_t> result;  ///< of an entry that shows a call of the host: what it answered

  std::string name;   ///< of a hook, dialog or state, or the key of an expectation
  std::string value;  ///< of a state

  bool met = false;        ///< of an expectation
  std::string difference;  ///< of an expectation that isn't met; has several lines

  SpanKind span = SpanKind::hook;  ///< of a begin or end
  Shown shown = Shown::unknown;    ///< of the end of a dialog
};

}  // namespace host
