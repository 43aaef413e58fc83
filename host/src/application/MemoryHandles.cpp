#include "MemoryHandles.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <numeric>
#include <utility>

namespace host {
namespace {

constexpr size_t kMostFreedHandles = 256;

}  // namespace

std::string Origin::text() const {
  return fmt::format("{} in the {} at tick {}", function, hook, tick);
}

bool MemoryHandles::Block::resize(size_t newSize) {
  // A block of size 0 has an address too. Zero bytes of the system's take no time and no memory
  // until they are used.
  decltype(bytes) taken(static_cast<char*>(std::calloc(std::max<size_t>(newSize, 1), 1)),
                        std::free);
  if (!taken) return false;
  if (bytes) std::memcpy(taken.get(), bytes.get(), std::min(size, newSize));
  bytes = std::move(taken);
  start = reinterpret_cast<_Up_OpaqueMem*>(bytes.get());
  size = newSize;
  return true;
}

AEGP_MemHandle MemoryHandles::make(size_t size, const Origin& origin) {
  auto block = std::make_unique<Block>();
  if (!block->resize(size)) return nullptr;
  block->origin = origin;
  const AEGP_MemHandle handle = &block->start;
  mBlocks.emplace(handle, std::move(block));
  return handle;
}

AEGP_MemHandle MemoryHandles::make(const std::u16string& text, const Origin& origin) {
  const size_t size = (text.size() + 1) * sizeof(char16_t);
  const AEGP_MemHandle handle = make(size, origin);
  if (handle) std::memcpy(*handle, text.c_str(), size);
  return handle;
}

const Origin* MemoryHandles::freed(AEGP_MemHandle handle) const {
  const auto found = std::find_if(mFreed.begin(), mFreed.end(),
                                  [&](const auto& block) { return &block->start == handle; });
  return found == mFreed.end() ? nullptr : &(*found)->origin;
}

void MemoryHandles::free(AEGP_MemHandle handle) {
  std::unique_ptr<Block> block = std::move(mBlocks.at(handle));
  mBlocks.erase(handle);
  block->bytes.reset();
  block->start = nullptr;
  mFreed.push_back(std::move(block));
  if (mFreed.size() > kMostFreedHandles) mFreed.pop_front();
}

void* MemoryHandles::lock(AEGP_MemHandle handle) {
  ++mBlocks.at(handle)->locks;
  return *handle;
}

bool MemoryHandles::unlock(AEGP_MemHandle handle) {
  Block& block = *mBlocks.at(handle);
  int& locks = block.locks > 0 ? block.locks : block.failedLocks;
  if (locks == 0) return false;
  --locks;
  return true;
}

bool MemoryHandles::resize(AEGP_MemHandle handle, size_t size) {
  return mBlocks.at(handle)->resize(size);
}

size_t MemoryHandles::totalSize() const {
  return std::accumulate(mBlocks.begin(), mBlocks.end(), size_t{0},
                         [](size_t sum, const auto& entry) { return sum + entry.second->size; });
}

std::vector<std::pair<std::string, Origin>> MemoryHandles::leaks() const {
  std::vector<std::pair<std::string, Origin>> leaks;
  for (const auto& [handle, block] : mBlocks) {
    leaks.emplace_back(block->locks > 0 ? "a locked memory handle" : "a memory handle",
                       block->origin);
  }
  std::sort(leaks.begin(), leaks.end(), [](const auto& one, const auto& other) {
    return one.second.text() < other.second.text();
  });
  return leaks;
}

}  // namespace host
