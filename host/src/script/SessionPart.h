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
class SessionPart {
 public:
  virtual ~SessionPart() = default;

  virtual std::vector<std::string_view> keys() const = 0;
  virtual std::vector<std::string_view> steps() const = 0;
  virtual std::vector<std::string_view> expectations() const = 0;

  /// Reads the keys that the session has, and adds to the session what goes with this part. `root`
  /// is the whole session.
  virtual void readKeys(const YamlValue& root, Session& session) const = 0;
  /// Reads the value of a step, whose name is its key.
  virtual Action readStep(const YamlValue& value) const = 0;
  /// Reads the value of a key of `expect`.
  virtual Check readExpectation(const YamlValue& value) const = 0;

  /// Returns the steps, as YAML, of which each makes this call alone go wrong in one way. They come
  /// at the beginning of a session. Returns none for a call that isn't one of this part.
  virtual std::vector<std::string> faultsOf(const CountedCall& call) const = 0;

  /// Adds the rules of random sessions that are this part's. One of the same name replaces the
  /// host's.
  virtual void addRandomRules(RandomRules& rules) const = 0;
};

}  // namespace host
