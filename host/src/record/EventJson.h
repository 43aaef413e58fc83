#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "Event.h"
#include "RunListener.h"

// Events and findings as JSON objects: in the pipe between the processes, and in files.

namespace host {

using Json = nlohmann::ordered_json;

/// Returns the event as an object, with its keys in the order of the format.
Json ToJson(const Event& event);
/// Returns the event of such an object. Throws `std::exception` for another one.
Event EventFrom(const Json& json);
/// Returns the finding as an object.
Json ToJson(const FoundInSession& found);
/// Returns the value on one line. Bytes that aren't UTF-8 become U+FFFD.
std::string Dump(const Json& json);

}  // namespace host
