#pragma once

#include <string>
#include <vector>

#include "Findings.h"

namespace host {

/// A finding that a session names as right, because the plug-in is meant to act so. An empty name
/// fits any.
struct Acceptance {
  Finding finding = Finding::expectation;
  std::string function;
  std::string detail;
  std::vector<std::string> after;  ///< one of these calls has to have failed before; empty for none
  std::string reason;
};

}  // namespace host
