#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include "SuiteFunction.h"

namespace host {
namespace {

A_Err CheckMemory(Host& host, Holding kind, Finding finding, const char* name, const void* thing) {
  const Held* const held = host.ledger.find(kind, thing);
  if (!held) {
    const Origin* const freed = host.ledger.takenBack(kind, thing);
    return host.misused(
        finding, freed ? fmt::format("the {} was freed before; it is from {}", name, freed->text())
                       : fmt::format("there is no such {}", name));
  }
  if (!held->bytes.isIntact()) {
    host.misused(Finding::overrun,
                 fmt::format("the plug-in has written past the end of the {}", name));
  }
  // The call goes on after an overrun: what it gives back would be left otherwise.
  return A_Err_NONE;
}

// There has to be such a handle.
Held& At(Host& host, AEGP_MemHandle handle) {
  return *host.ledger.find(Holding::memoryHandle, handle);
}

A_Err NewMemHandle(Host& host, AEGP_PluginID, const A_char*, AEGP_MemSize size, AEGP_MemFlag,
                   AEGP_MemHandle* handle) {
  const AEGP_MemHandle made = host.ledger.giveMemory(size, host.origin());
  if (!made) return A_Err_GENERIC;
  *handle = made;
  return A_Err_NONE;
}

A_Err FreeMemHandle(Host& host, AEGP_MemHandle handle) {
  A_Err error = A_Err_NONE;
  if (At(host, handle).locks > 0) {
    error = host.misused(Finding::lockedHandleFreed, "the handle is locked");
  }
  host.ledger.takeBack(Holding::memoryHandle, handle);
  return error;
}

A_Err LockMemHandle(Host& host, A_Err fault, AEGP_MemHandle handle, void** start) {
  Held& held = At(host, handle);
  ++(fault == A_Err_NONE ? held.locks : held.failedLocks);
  if (fault == A_Err_NONE) *start = held.bytes.start();
  return fault;
}

A_Err UnlockMemHandle(Host& host, AEGP_MemHandle handle) {
  Held& held = At(host, handle);
  int& locks = held.locks > 0 ? held.locks : held.failedLocks;
  if (locks == 0) return host.misused(Finding::unlockedTooOften, "the handle isn't locked");
  --locks;
  return A_Err_NONE;
}

void GetMemHandleSize(Host& host, AEGP_MemHandle handle, AEGP_MemSize* size) {
  *size = static_cast<AEGP_MemSize>(At(host, handle).bytes.size());
}

A_Err ResizeMemHandle(Host& host, const A_char*, AEGP_MemSize size, AEGP_MemHandle handle) {
  Held& held = At(host, handle);
  if (held.locks > 0) {
    return host.misused(Finding::badArgument, "the handle is locked, and its memory would move");
  }
  GuardedBytes resized(size);
  if (!resized.start()) return A_Err_GENERIC;
  std::memcpy(resized.start(), held.bytes.start(), std::min<size_t>(size, held.bytes.size()));
  held.bytes = std::move(resized);
  *handle = reinterpret_cast<_Up_OpaqueMem*>(held.bytes.start());
  return A_Err_NONE;
}

void GetMemStats(Host& host, AEGP_PluginID, A_long* count, A_long* size) {
  *count = 0;
  *size = 0;
  for (const auto& [handle, held] : host.ledger.held(Holding::memoryHandle)) {
    ++*count;
    *size += static_cast<A_long>(held->bytes.size());
  }
}

}  // namespace

A_Err CheckPointer(Host& host, AEGP_MemHandle handle) {
  return CheckMemory(host, Holding::memoryHandle, Finding::unknownHandle, "handle", handle);
}

A_Err CheckPointer(Host& host, void* block) {
  return CheckMemory(host, Holding::block, Finding::unknownBlock, "block", block);
}

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
