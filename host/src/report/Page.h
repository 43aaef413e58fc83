#pragma once

#include <string_view>

namespace host {

/// Returns the page that shows sessions, with `/*EVENTS*/` once in place of the JSON array.
std::string_view Page();

}  // namespace host
