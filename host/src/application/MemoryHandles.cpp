#include "MemoryHandles.h"

#include <fmt/format.h>

#include <utility>

namespace host {

AEGP_MemHandle MemoryHandles::make(const std::u16string& text) {
  auto block = std::make_unique<Block>();
  block->text = text;
  block->start = reinterpret_cast<_Up_OpaqueMem*>(block->text.data());
  const AEGP_MemHandle handle = &block->start;
  mBlocks.emplace(handle, std::move(block));
  return handle;
}

MemoryHandles::Block* MemoryHandles::find(AEGP_MemHandle handle, const char* function) {
  const auto found = mBlocks.find(handle);
  if (found != mBlocks.end()) return found->second.get();
  mViolations.push_back(fmt::format("{} got a handle that doesn't exist (any more)", function));
  return nullptr;
}

A_Err MemoryHandles::free(AEGP_MemHandle handle) {
  const Block* block = find(handle, "AEGP_FreeMemHandle");
  if (!block) return A_Err_GENERIC;
  if (block->locks > 0) mViolations.emplace_back("a handle was freed while it was locked");
  mBlocks.erase(handle);
  return A_Err_NONE;
}

A_Err MemoryHandles::lock(AEGP_MemHandle handle, void** start) {
  Block* block = find(handle, "AEGP_LockMemHandle");
  if (!block) return A_Err_GENERIC;
  ++block->locks;
  *start = block->start;
  return A_Err_NONE;
}

A_Err MemoryHandles::unlock(AEGP_MemHandle handle) {
  Block* block = find(handle, "AEGP_UnlockMemHandle");
  if (!block) return A_Err_GENERIC;
  if (block->locks > 0) {
    --block->locks;
    return A_Err_NONE;
  }
  if (block->failedLocks > 0) {
    --block->failedLocks;
  } else {
    mViolations.emplace_back("a handle was unlocked that wasn't locked");
  }
  return A_Err_GENERIC;
}

void MemoryHandles::noteFailedLock(AEGP_MemHandle handle) {
  if (Block* block = find(handle, "AEGP_LockMemHandle")) ++block->failedLocks;
}

std::vector<std::string> MemoryHandles::findings() const {
  std::vector<std::string> findings = mViolations;
  int locks = 0;
  for (const auto& [handle, block] : mBlocks) locks += block->locks;
  if (!mBlocks.empty()) findings.push_back(fmt::format("{} memory handle(s) left", mBlocks.size()));
  if (locks > 0) findings.push_back(fmt::format("{} lock(s) of memory handles left", locks));
  return findings;
}

}  // namespace host
