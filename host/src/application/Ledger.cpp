#include "Ledger.h"

#include <dlfcn.h>
#include <fmt/format.h>
#include <malloc.h>

#include <algorithm>
#include <cstring>
#include <iterator>

namespace host {
namespace {

constexpr size_t kGuardSize = 16;
constexpr char kGuard = '\x5a';

using Mark = void (*)(const volatile void*, size_t);

// The sanitizer is the plug-in's, so its functions are known only at run time.
Mark FindMark(const char* name) {
  const auto found = reinterpret_cast<Mark>(dlsym(RTLD_DEFAULT, name));
  return found ? found : [](const volatile void*, size_t) {};
}

void Poison(const void* start, size_t size) {
  static const Mark poison = FindMark("__asan_poison_memory_region");
  poison(start, size);
}

size_t BytesOf(void* allocated) {
  return allocated ? malloc_usable_size(allocated) + sizeof(size_t) : 0;
}

}  // namespace

// Zero bytes of the system's take no time and no memory until they are used.
GuardedBytes::GuardedBytes(size_t size)
    : mStart(static_cast<char*>(std::calloc(size + kGuardSize, 1))), mSize(size) {
  if (!mStart) return;
  std::memset(start() + size, kGuard, kGuardSize);
  Poison(start() + size, kGuardSize);
}

bool GuardedBytes::isIntact() const {
  static const Mark unpoison = FindMark("__asan_unpoison_memory_region");
  if (!mStart) return true;
  const char* const guard = start() + mSize;
  unpoison(guard, kGuardSize);
  const bool isIntact =
      std::all_of(guard, guard + kGuardSize, [](char byte) { return byte == kGuard; });
  Poison(guard, kGuardSize);
  return isIntact;
}

void GuardedBytes::poison() const {
  if (mStart) Poison(start(), mSize + kGuardSize);
}

std::string Origin::text() const {
  return fmt::format("{} in the {} at tick {}", function, hook, tick);
}

void Ledger::giveSuite(const void* table, const Origin& origin) {
  mHeld.emplace(Key(Holding::suite, table), Held{origin});
}

AEGP_MemHandle Ledger::giveSlot(Holding kind, Held given) {
  auto* const start = reinterpret_cast<_Up_OpaqueMem*>(given.bytes.start());
  given.slot = std::make_unique<_Up_OpaqueMem*>(start);
  const AEGP_MemHandle slot = given.slot.get();
  mHeld.emplace(Key(kind, slot), std::move(given));
  return slot;
}

AEGP_ProjectH Ledger::giveProject() {
  return reinterpret_cast<AEGP_ProjectH>(giveSlot(Holding::project, {}));
}

AEGP_MemHandle Ledger::giveMemory(size_t size, const Origin& origin) {
  Held given{origin, GuardedBytes(size)};
  if (!given.bytes.start()) return nullptr;
  return giveSlot(Holding::memoryHandle, std::move(given));
}

void* Ledger::giveBlock(size_t size, const Origin& origin) {
  Held given{origin, GuardedBytes(size)};
  void* const block = given.bytes.start();
  if (block) mHeld.emplace(Key(Holding::block, block), std::move(given));
  return block;
}

Held* Ledger::find(Holding kind, const void* thing) {
  const auto found = mHeld.find({kind, thing});
  return found == mHeld.end() ? nullptr : &found->second;
}

bool Ledger::takeBack(Holding kind, const void* thing) {
  if (!find(kind, thing)) return false;
  const auto latest = std::prev(mHeld.upper_bound({kind, thing}));
  auto& [things, next] = mTakenBack[static_cast<size_t>(kind)];
  auto& [address, held] = things[next];
  next = (next + 1) % things.size();
  address = thing;
  held = std::move(latest->second);
  mHeld.erase(latest);
  held.bytes.poison();
  if (held.slot) {
    // The slot keeps the address, and a sanitizer sees the use of bytes that are really freed.
    held.bytes = GuardedBytes();
    *held.slot = nullptr;
  }
  return true;
}

const Origin* Ledger::takenBack(Holding kind, const void* thing) const {
  for (const auto& [taken, held] : mTakenBack[static_cast<size_t>(kind)].things) {
    if (taken == thing) return &held.origin;
  }
  return nullptr;
}

std::vector<std::pair<const void*, const Held*>> Ledger::held(Holding kind) const {
  std::vector<std::pair<const void*, const Held*>> things;
  for (const auto& [key, held] : mHeld) {
    if (key.first == kind) things.emplace_back(key.second, &held);
  }
  std::sort(things.begin(), things.end(), [](const auto& one, const auto& other) {
    return one.second->origin.text() < other.second->origin.text();
  });
  return things;
}

size_t Ledger::bytesKept() const {
  size_t bytes = 0;
  for (const TakenBack& ofAKind : mTakenBack) {
    for (const auto& [thing, held] : ofAKind.things) {
      bytes += BytesOf(held.bytes.start()) + BytesOf(held.slot.get());
    }
  }
  return bytes;
}

}  // namespace host
