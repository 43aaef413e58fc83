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
  /// It can be a known issue: it doesn't keep the session from going on, and isn't what the session
  /// itself says.
  kCanBeKnown = 1,
  /// A tolerant session excuses it if an error that the host has answered may be its cause.
  kExcusable = 2,
  /// Another finding is often its cause, and stands before it.
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
