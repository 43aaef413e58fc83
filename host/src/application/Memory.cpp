#include "Memory.h"

#include <dlfcn.h>
#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <numeric>
#include <utility>

namespace host {
namespace {

constexpr size_t kMaxFreed = 256;
constexpr size_t kGuardSize = 16;
constexpr char kGuard = '\x5a';

using Sanitizer = void (*)(const volatile void*, size_t);

// The sanitizer is the plug-in's, so its functions are known only at run time.
Sanitizer Find(const char* name) {
  return reinterpret_cast<Sanitizer>(dlsym(RTLD_DEFAULT, name));
}

void Poison(const void* start, size_t size) {
  static const Sanitizer poison = Find("__asan_poison_memory_region");
  if (poison) poison(start, size);
}

void Unpoison(const void* start, size_t size) {
  static const Sanitizer unpoison = Find("__asan_unpoison_memory_region");
  if (unpoison) unpoison(start, size);
}

}  // namespace

// Zero bytes of the system's take no time and no memory until they are used.
GuardedBytes::GuardedBytes(size_t size)
    : mStart(static_cast<char*>(std::calloc(size + kGuardSize, 1))), mSize(size) {
  if (!mStart) return;
  std::memset(mStart + mSize, kGuard, kGuardSize);
  Poison(mStart + mSize, kGuardSize);
}

GuardedBytes::~GuardedBytes() {
  if (mStart) Unpoison(mStart, mSize + kGuardSize);
  std::free(mStart);
}

bool GuardedBytes::isIntact() const {
  const char* const guard = mStart + mSize;
  Unpoison(guard, kGuardSize);
  const bool isIntact =
      std::all_of(guard, guard + kGuardSize, [](char byte) { return byte == kGuard; });
  Poison(guard, kGuardSize);
  return isIntact;
}

void GuardedBytes::poison() const {
  Poison(mStart, mSize + kGuardSize);
}

size_t GuardedBytes::footprint() const {
  return malloc_usable_size(mStart) + sizeof(size_t);
}

bool Memory::Handle::hold(std::unique_ptr<GuardedBytes> held) {
  if (!held->start()) return false;
  if (bytes) std::memcpy(held->start(), bytes->start(), std::min(bytes->size(), held->size()));
  bytes = std::move(held);
  start = reinterpret_cast<_Up_OpaqueMem*>(bytes->start());
  return true;
}

AEGP_MemHandle Memory::makeHandle(size_t size) {
  auto made = std::make_unique<Handle>();
  if (!made->hold(std::make_unique<GuardedBytes>(size))) return nullptr;
  const AEGP_MemHandle handle = &made->start;
  mHandles.emplace(handle, std::move(made));
  return handle;
}

AEGP_MemHandle Memory::makeHandle(const std::u16string& text) {
  const size_t size = (text.size() + 1) * sizeof(char16_t);
  const AEGP_MemHandle handle = makeHandle(size);
  if (handle) std::memcpy(*handle, text.c_str(), size);
  return handle;
}

void Memory::freeHandle(AEGP_MemHandle handle) {
  std::unique_ptr<Handle> freed = std::move(mHandles.at(handle));
  mHandles.erase(handle);
  freed->bytes.reset();
  freed->start = nullptr;
  mFreedHandles.push_back(std::move(freed));
  if (mFreedHandles.size() > kMaxFreed) mFreedHandles.pop_front();
}

void* Memory::lock(AEGP_MemHandle handle) {
  ++handleOf(handle).locks;
  return *handle;
}

void Memory::noteFailedLock(AEGP_MemHandle handle) {
  ++handleOf(handle).failedLocks;
}

bool Memory::unlock(AEGP_MemHandle handle) {
  Handle& unlocked = handleOf(handle);
  int& locks = unlocked.locks > 0 ? unlocked.locks : unlocked.failedLocks;
  if (locks == 0) return false;
  --locks;
  return true;
}

bool Memory::resize(AEGP_MemHandle handle, size_t size) {
  return handleOf(handle).hold(std::make_unique<GuardedBytes>(size));
}

size_t Memory::totalSize() const {
  return std::accumulate(
      mHandles.begin(), mHandles.end(), size_t{0},
      [](size_t sum, const auto& entry) { return sum + entry.second->bytes->size(); });
}

void* Memory::makeBlock(size_t size) {
  auto bytes = std::make_unique<GuardedBytes>(size);
  if (!bytes->start()) return nullptr;
  void* const block = bytes->start();
  mBlocks.emplace(block, std::move(bytes));
  return block;
}

void Memory::freeBlock(void* block) {
  std::unique_ptr<GuardedBytes> bytes = std::move(mBlocks.at(block));
  mBlocks.erase(block);
  bytes->poison();
  mBytesKept += bytes->footprint();
  mFreedBlocks.push_back(std::move(bytes));
  if (mFreedBlocks.size() <= kMaxFreed) return;
  mBytesKept -= mFreedBlocks.front()->footprint();
  mFreedBlocks.pop_front();
}

void* Memory::reallocate(void* block, size_t size) {
  void* const moved = makeBlock(size);
  if (!moved) return nullptr;
  std::memcpy(moved, block, std::min(size, mBlocks.at(block)->size()));
  freeBlock(block);
  return moved;
}

}  // namespace host
