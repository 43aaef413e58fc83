#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <random>
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

/// Numbers that a seed fixes, the same on every machine.
class Random {
 public:
  /// Each `number` of a seed gives another sequence.
  Random(uint64_t seed, uint64_t number) {
    std::seed_seq sequence{seed, seed >> 32, number, number >> 32};
    mEngine.seed(sequence);
  }
  /// Returns a number from 0 to `count` - 1.
  size_t below(size_t count) { return static_cast<size_t>(mEngine() % count); }
  /// Returns true with the probability 1 / `count`.
  bool oneIn(size_t count) { return below(count) == 0; }
  template <typename Choice, size_t count>
  const Choice& among(const std::array<Choice, count>& choices) {
    return choices[below(count)];
  }

 private:
  std::mt19937_64 mEngine;
};

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

  /// Returns whether, in the session that this process plays, an answer still waits for the call
  /// that has its number.
  virtual bool awaitsCall() const = 0;

  /// Adds keys of this part to a session that is made up.
  virtual void addRandomKeys(Random& random, YAML::Node& session) const = 0;
  /// Returns steps of this part as YAML, as they can come together at any place.
  virtual std::vector<std::string> randomSteps(Random& random) const = 0;
  /// Returns a step that makes something of this part go wrong.
  virtual std::string randomFault(Random& random) const = 0;
};

}  // namespace host
