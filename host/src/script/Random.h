#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <random>

namespace host {

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

}  // namespace host
