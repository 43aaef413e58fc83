#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "Event.h"

// Events as JSON objects: in the pipe between the processes, one a line, and in files.

namespace host {

using Json = nlohmann::ordered_json;

/// Returns the event as an object, with its keys in the order of the format.
Json ToJson(const Event& event);
/// Returns the value on one line. Bytes that aren't UTF-8 become U+FFFD.
std::string Dump(const Json& json);
/// Takes the events out of lines of objects, and leaves there what isn't whole. Throws
/// `std::exception` for a line that isn't an event.
std::vector<Event> TakeEvents(std::string& bytes);

}  // namespace host
