#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Everything that a session can find wrong, each with a name that the command line knows.

namespace host {

enum class Level { warning, error };

enum class Finding {
#define FINDING(finding, ...) finding,
#include "Findings.def"
#undef FINDING
};

/// Properties of a kind of finding.
enum : unsigned {
  /// A known issue may name it: neither what ends the session nor a fault of its script.
  kCanBeKnown = 1,
  /// A tolerant session excuses it if an error that the host has answered may be its cause.
  kExcusable = 2,
  /// It often follows from another finding, and so stands after the others.
  kFollows = 4,
};

struct FindingKind {
  Finding finding;
  std::string_view name;
  Level level;
  std::string_view expectKey;  ///< of an `expect` that can name it; empty for none
  unsigned properties;
  std::string_view sentence;

  constexpr bool has(unsigned property) const { return (properties & property) != 0; }
  /// A misuse is shown on the timeline at once, and counts even if the session is cut short. An
  /// `expect` names it by its kind.
  constexpr bool isMisuse() const { return expectKey == "findings"; }
};

/// Every kind of finding, in the order of the enumeration.
inline constexpr std::array kFindingKinds{
#define FINDING(finding, name, level, ...) \
  FindingKind{Finding::finding, name, Level::level, __VA_ARGS__},
#include "Findings.def"
#undef FINDING
};

/// A fact that is no finding, because the plug-in is meant to act so. An empty name fits any.
struct KnownIssue {
  Finding finding = Finding::expectation;
  std::string function;
  std::string detail;
  std::vector<std::string> after;  ///< one of these calls has to have failed before; empty for none
  std::string reason;
  bool isOfEverySession = false;  ///< and so needn't come in one
};

/// Returns what is known of the finding.
constexpr const FindingKind& KindOf(Finding finding) {
  return kFindingKinds[static_cast<size_t>(finding)];
}

/// Returns the finding of that name, or none.
constexpr std::optional<Finding> FindingNamed(std::string_view name) {
  for (const FindingKind& kind : kFindingKinds) {
    if (kind.name == name) return kind.finding;
  }
  return {};
}

}  // namespace host
