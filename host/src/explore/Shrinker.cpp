#include "Shrinker.h"

#include <yaml-cpp/yaml.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "SessionFiles.h"
#include "YamlValue.h"

namespace host {
namespace {

// Returns whether a session still fails as the first one did. One that can't be read doesn't.
using StillFails = std::function<bool(const YAML::Node&)>;

// The keys and values of a map, or the elements of a list as values. They are never assigned: that
// would change the tree that they come from.
using Entries = std::vector<std::pair<YAML::Node, YAML::Node>>;

Entries EntriesOf(const YAML::Node& node) {
  Entries entries;
  for (const auto& entry : node) {
    if (node.IsMap()) {
      entries.emplace_back(entry.first, entry.second);
    } else {
      entries.emplace_back(YAML::Node(), entry);
    }
  }
  return entries;
}

YAML::Node WithEntries(const YAML::Node& node, const Entries& entries) {
  YAML::Node copy(node.Type());
  copy.SetStyle(node.Style());
  for (const auto& [key, value] : entries) {
    if (node.IsMap()) {
      copy[key] = value;
    } else {
      copy.push_back(value);
    }
  }
  return copy;
}

// Leaves out as many neighbours at once as it can: half of the entries, then a quarter, down to
// one. One may need its neighbour, as the framework's folder the file that names it, so that each
// pair of neighbours has its turn.
Entries DropEntries(const YAML::Node& node, const StillFails& stillFails) {
  Entries entries = EntriesOf(node);
  for (size_t chunk = (entries.size() + 1) / 2; chunk > 0; chunk /= 2) {
    for (size_t begin = 0; begin < entries.size();) {
      Entries others;
      for (size_t i = 0; i < entries.size(); ++i) {
        if (i < begin || i >= begin + chunk) others.push_back(entries[i]);
      }
      // A map of one entry may give way to its value, or go as a whole.
      const bool isTried = !node.IsMap() || !others.empty();
      if (isTried && stillFails(WithEntries(node, others))) {
        entries.swap(others);
      } else {
        begin += (chunk + 1) / 2;
      }
    }
  }
  return entries;
}

// Returns the smallest number that fails, by bisection, as if all above it failed too. A text that
// is no number stays.
YAML::Node ShrinkNumber(const YAML::Node& node, const StillFails& stillFails) {
  const std::optional<int64_t> first = NumberIn(node.Scalar());
  if (!first) return node;
  int64_t number = *first;
  int64_t passing = 0;
  while (number - passing > 1) {
    const int64_t middle = passing + (number - passing) / 2;
    (stillFails(YAML::Node(std::to_string(middle))) ? number : passing) = middle;
  }
  return number == *first ? node : YAML::Node(std::to_string(number));
}

YAML::Node ShrinkNode(const YAML::Node& node, const StillFails& stillFails) {
  if (node.IsScalar()) return ShrinkNumber(node, stillFails);
  Entries entries = DropEntries(node, stillFails);
  // The steps of a session come last, and shorten it most.
  for (size_t i = entries.size(); i-- > 0;) {
    const auto fails = [&](const YAML::Node& smaller) {
      Entries changed = entries;
      changed[i].second.reset(smaller);
      return stillFails(WithEntries(node, changed));
    };
    entries[i].second.reset(ShrinkNode(entries[i].second, fails));
  }
  // `tick: 3` in place of `tick: {count: 3}`.
  const bool isSingle = node.IsMap() && entries.size() == 1;
  if (isSingle && stillFails(entries.front().second)) return entries.front().second;
  return WithEntries(node, entries);
}

std::set<Finding> KindsOf(const std::vector<Event>& findings) {
  std::set<Finding> kinds;
  for (const Event& found : findings) kinds.insert(KindOf(found).finding);
  return kinds;
}

// Returns null if the session can't be read.
std::shared_ptr<const Session> Read(const YAML::Node& session, const std::string& name,
                                    const SessionPart& part) {
  try {
    return std::make_shared<Session>(ReadSessions(name, WriteSession(session, name), part).front());
  } catch (const SessionFileError&) {
    return nullptr;
  }
}

}  // namespace

void Shorten(Failure& failure, RunOptions options, const SessionPart& part) {
  const std::set<Finding> kinds = KindsOf(failure.findings);
  // A plug-in that hangs does so at each try.
  const bool hangs = kinds.contains(Finding::timeout);
  if (hangs) options.timeoutSeconds = 1;
  const size_t max = hangs ? 30 : 400;
  bool fails = false;
  bool isSmaller = true;
  Trials trials("shortening", max, [&](size_t /*index*/, const Played& played) {
    fails = played.failed && KindsOf(played.findings) == kinds;
    if (!fails) return;
    isSmaller = true;
    failure.findings = played.findings;
  });
  const auto stillFails = [&](const YAML::Node& smaller) {
    std::shared_ptr<const Session> session = Read(smaller, failure.title, part);
    if (!session || !session->host.tolerant || trials.count() == max) return false;
    fails = false;
    PlaySessions([&] { return std::exchange(session, nullptr); }, options, {&trials});
    return fails;
  };
  while (std::exchange(isSmaller, false)) {
    failure.session.reset(ShrinkNode(failure.session, stillFails));
  }
}

}  // namespace host
