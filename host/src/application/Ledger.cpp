#include "Ledger.h"

#include <fmt/format.h>

#include <algorithm>

namespace host {

std::string Origin::text() const {
  return fmt::format("{} in the {} at tick {}", function, hook, tick);
}

void Ledger::give(Holding kind, const void* thing, const Origin& origin) {
  mHeld[{kind, thing}].push_back(origin);
  ++mGiven[static_cast<size_t>(kind)];
}

bool Ledger::takeBack(Holding kind, const void* thing) {
  const auto held = mHeld.find({kind, thing});
  if (held == mHeld.end()) return false;
  const auto index = static_cast<size_t>(kind);
  size_t& next = mNext[index];
  mTakenBack[index][next] = {thing, held->second.back()};
  next = (next + 1) % kMaxTakenBack;
  held->second.pop_back();
  if (held->second.empty()) mHeld.erase(held);
  return true;
}

const Origin* Ledger::takenBack(Holding kind, const void* thing) const {
  const auto& all = mTakenBack[static_cast<size_t>(kind)];
  const auto* const found = std::find_if(
      all.begin(), all.end(), [&](const TakenBack& each) { return each.thing == thing; });
  return found == all.end() ? nullptr : &found->origin;
}

std::vector<std::pair<const void*, Origin>> Ledger::held(Holding kind) const {
  std::vector<std::pair<const void*, Origin>> things;
  for (const auto& [key, origins] : mHeld) {
    if (key.first != kind) continue;
    for (const Origin& origin : origins) things.emplace_back(key.second, origin);
  }
  std::sort(things.begin(), things.end(), [](const auto& one, const auto& other) {
    return one.second.text() < other.second.text();
  });
  return things;
}

}  // namespace host
