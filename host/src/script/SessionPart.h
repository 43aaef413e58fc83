#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "Session.h"
#include "YamlValue.h"

namespace host {

/// Compares at an `expect` step. Returns what is wrong, or an empty text.
using Check = std::function<std::string(Host&)>;

/// A call that can go wrong.
struct CountedCall {
  std::string function;  ///< of the host, or an operation of a framework
  int64_t number = 0;    ///< among the calls of the function in the session, from 1
};

/// What random sessions are made of, as random-rules.yaml says.
using RandomRules = std::map<std::string, std::vector<std::string>>;

/// Words of a session that the host itself doesn't know, such as those about a font manager. Every
/// reader throws `SessionFileError`.
struct SessionPart {
  /// Adds to a session what goes with this part. Returns the readers of its keys.
  std::function<std::vector<KeyReader>(Session&)> addTo;
  /// The readers of its steps, and of its keys of `expect`, by name.
  std::map<std::string_view, std::function<Action(const YamlValue&)>> steps;
  std::map<std::string_view, std::function<Check(const YamlValue&)>> expectations;
  /// Returns the steps, as YAML, of which each makes this call alone go wrong in one way. They come
  /// at the beginning of a session. Returns none for a call that isn't one of this part.
  std::function<std::vector<std::string>(const CountedCall&)> faultsOf;
  /// Those of this part. One of the same name replaces the host's.
  RandomRules randomRules;
};

}  // namespace host
