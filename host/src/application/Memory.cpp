#include "Memory.h"

#include <dlfcn.h>
#include <fmt/format.h>
#include <malloc.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include "SuiteFunction.h"

namespace host {
namespace {

constexpr size_t kGuardSize = 16;
constexpr char kGuard = '\x5a';

using Mark = void (*)(const volatile void*, size_t);

// The sanitizer is the plug-in's, so its functions are known only at run time.
Mark Find(const char* name) {
  const auto found = reinterpret_cast<Mark>(dlsym(RTLD_DEFAULT, name));
  return found ? found : [](const volatile void*, size_t) {};
}

void Poison(const void* start, size_t size) {
  static const Mark poison = Find("__asan_poison_memory_region");
  poison(start, size);
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
  static const Mark unpoison = Find("__asan_unpoison_memory_region");
  const char* const guard = start() + mSize;
  unpoison(guard, kGuardSize);
  const bool isIntact =
      std::all_of(guard, guard + kGuardSize, [](char byte) { return byte == kGuard; });
  Poison(guard, kGuardSize);
  return isIntact;
}

void GuardedBytes::poison() const {
  Poison(start(), mSize + kGuardSize);
}

AEGP_MemHandle Memory::makeHandle(size_t size) {
  Piece made{GuardedBytes(size), std::make_unique<_Up_OpaqueMem*>()};
  if (!made.bytes.start()) return nullptr;
  *made.slot = reinterpret_cast<_Up_OpaqueMem*>(made.bytes.start());
  const AEGP_MemHandle handle = made.slot.get();
  mPieces.emplace(handle, std::move(made));
  return handle;
}

void* Memory::makeBlock(size_t size) {
  GuardedBytes bytes(size);
  void* const block = bytes.start();
  if (block) mPieces.emplace(block, Piece{std::move(bytes), nullptr});
  return block;
}

bool Memory::resize(AEGP_MemHandle handle, size_t size) {
  GuardedBytes resized(size);
  if (!resized.start()) return false;
  GuardedBytes& bytes = at(handle).bytes;
  std::memcpy(resized.start(), bytes.start(), std::min(size, bytes.size()));
  bytes = std::move(resized);
  *handle = reinterpret_cast<_Up_OpaqueMem*>(bytes.start());
  return true;
}

void Memory::free(const void* thing) {
  Piece& freed = mFreed[mNextFreed];
  mNextFreed = (mNextFreed + 1) % mFreed.size();
  freed = std::move(mPieces.extract(thing).mapped());
  if (!freed.slot) return freed.bytes.poison();
  freed.bytes = GuardedBytes();
  *freed.slot = nullptr;
}

size_t Memory::bytesKept() const {
  size_t bytes = 0;
  for (const Piece& freed : mFreed) {
    if (freed.bytes.start()) bytes += malloc_usable_size(freed.bytes.start()) + sizeof(size_t);
  }
  return bytes;
}

namespace {

A_Err CheckMemory(Host& host, Holding kind, Finding finding, const char* name, const void* thing) {
  if (!host.ledger.holds(kind, thing)) {
    const Origin* const freed = host.ledger.takenBack(kind, thing);
    return host.misused(
        finding, freed ? fmt::format("the {} was freed before; it is from {}", name, freed->text())
                       : fmt::format("there is no such {}", name));
  }
  if (!host.memory.at(thing).bytes.isIntact()) {
    host.misused(Finding::overrun,
                 fmt::format("the plug-in has written past the end of the {}", name));
  }
  // The call goes on after an overrun: what it gives back would be left otherwise.
  return A_Err_NONE;
}

}  // namespace

A_Err CheckPointer(Host& host, AEGP_MemHandle handle) {
  return CheckMemory(host, Holding::memoryHandle, Finding::unknownHandle, "handle", handle);
}

A_Err CheckPointer(Host& host, void* block) {
  return CheckMemory(host, Holding::block, Finding::unknownBlock, "block", block);
}

namespace {

A_Err NewMemHandle(Host& host, AEGP_PluginID, const A_char*, AEGP_MemSize size, AEGP_MemFlag,
                   AEGP_MemHandle* handle) {
  const AEGP_MemHandle made = host.memory.makeHandle(size);
  if (!made) return A_Err_GENERIC;
  host.ledger.give(Holding::memoryHandle, made, host.origin());
  *handle = made;
  return A_Err_NONE;
}

A_Err FreeMemHandle(Host& host, AEGP_MemHandle handle) {
  A_Err error = A_Err_NONE;
  if (host.memory.at(handle).locks > 0) {
    error = host.misused(Finding::lockedHandleFreed, "the handle is locked");
  }
  host.ledger.takeBack(Holding::memoryHandle, handle);
  host.memory.free(handle);
  return error;
}

A_Err LockMemHandle(Host& host, A_Err fault, AEGP_MemHandle handle, void** start) {
  Piece& piece = host.memory.at(handle);
  ++(fault == A_Err_NONE ? piece.locks : piece.failedLocks);
  if (fault == A_Err_NONE) *start = *handle;
  return fault;
}

A_Err UnlockMemHandle(Host& host, AEGP_MemHandle handle) {
  Piece& piece = host.memory.at(handle);
  int& locks = piece.locks > 0 ? piece.locks : piece.failedLocks;
  if (locks == 0) return host.misused(Finding::unlockedTooOften, "the handle isn't locked");
  --locks;
  return A_Err_NONE;
}

void GetMemHandleSize(Host& host, AEGP_MemHandle handle, AEGP_MemSize* size) {
  *size = static_cast<AEGP_MemSize>(host.memory.at(handle).bytes.size());
}

A_Err ResizeMemHandle(Host& host, const A_char*, AEGP_MemSize size, AEGP_MemHandle handle) {
  if (host.memory.at(handle).locks > 0) {
    return host.misused(Finding::badArgument, "the handle is locked, and its memory would move");
  }
  return host.memory.resize(handle, size) ? A_Err{A_Err_NONE} : A_Err{A_Err_GENERIC};
}

void GetMemStats(Host& host, AEGP_PluginID, A_long* count, A_long* size) {
  *count = 0;
  *size = 0;
  for (const auto& [thing, piece] : host.memory.pieces()) {
    if (!piece.slot) continue;
    ++*count;
    *size += static_cast<A_long>(piece.bytes.size());
  }
}

}  // namespace

const AEGP_MemorySuite1 kMemorySuite1{
    SUPPLIED(kMemorySuite1, AEGP_NewMemHandle, NewMemHandle, "aegp_plugin_id", "whatZ", "size",
             "flags", "memPH"),
    GIVES_BACK(kMemorySuite1, AEGP_FreeMemHandle, FreeMemHandle, "memH"),
    SUPPLIED(kMemorySuite1, AEGP_LockMemHandle, LockMemHandle, "memH", "ptr_to_ptr"),
    GIVES_BACK(kMemorySuite1, AEGP_UnlockMemHandle, UnlockMemHandle, "memH"),
    SUPPLIED(kMemorySuite1, AEGP_GetMemHandleSize, GetMemHandleSize, "memH", "sizeP"),
    SUPPLIED(kMemorySuite1, AEGP_ResizeMemHandle, ResizeMemHandle, "whatZ", "new_size", "memH"),
    NOT_SUPPLIED(kMemorySuite1, AEGP_SetMemReportingOn),
    SUPPLIED(kMemorySuite1, AEGP_GetMemStats, GetMemStats, "aegp_plugin_id", "countPL", "sizePL"),
};

}  // namespace host
