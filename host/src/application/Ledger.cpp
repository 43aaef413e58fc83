#include "Ledger.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

namespace host {

std::string Origin::text() const {
  return fmt::format("{} in the {} at tick {}", function, hook, tick);
}

void Ledger::give(Holding kind, const void* thing, const Origin& origin) {
  mHeld.emplace(std::pair(kind, thing), origin);
  if (kind == Holding::suite) ++mSuitesGiven;
}

bool Ledger::takeBack(Holding kind, const void* thing) {
  if (!holds(kind, thing)) return false;
  const auto latest = std::prev(mHeld.upper_bound({kind, thing}));
  auto& [things, next] = mTakenBack[static_cast<size_t>(kind)];
  things[next] = {thing, latest->second};
  next = (next + 1) % things.size();
  mHeld.erase(latest);
  return true;
}

const Origin* Ledger::takenBack(Holding kind, const void* thing) const {
  for (const auto& [taken, origin] : mTakenBack[static_cast<size_t>(kind)].things) {
    if (taken == thing) return &origin;
  }
  return nullptr;
}

std::vector<std::pair<const void*, Origin>> Ledger::held(Holding kind) const {
  std::vector<std::pair<const void*, Origin>> things;
  for (const auto& [key, origin] : mHeld) {
    if (key.first == kind) things.emplace_back(key.second, origin);
  }
  std::sort(things.begin(), things.end(), [](const auto& one, const auto& other) {
    return one.second.text() < other.second.text();
  });
  return things;
}

}  // namespace host
