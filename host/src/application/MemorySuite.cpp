#include "SuiteFunction.h"

namespace host {
namespace {

A_Err NewMemHandle(AEGP_PluginID, const A_char*, AEGP_MemSize size, AEGP_MemFlag,
                   AEGP_MemHandle* handle) {
  const AEGP_MemHandle made = TheHost().memory.makeHandle(size);
  if (!made) return A_Err_GENERIC;
  TheHost().ledger.give(Holding::memoryHandle, made, TheHost().origin());
  *handle = made;
  return A_Err_NONE;
}

A_Err FreeMemHandle(AEGP_MemHandle handle) {
  if (TheHost().memory.isLocked(handle)) {
    SuiteCall::current().misused(Finding::lockedHandleFreed, "the handle is locked");
  }
  TheHost().ledger.takeBack(Holding::memoryHandle, handle);
  TheHost().memory.freeHandle(handle);
  return SuiteCall::current().error();
}

A_Err LockMemHandle(AEGP_MemHandle handle, void** start) {
  *start = TheHost().memory.lock(handle);
  return A_Err_NONE;
}

void NoteFailedLock(AEGP_MemHandle handle, void**) {
  if (!TheHost().ledger.holds(Holding::memoryHandle, handle)) return;
  TheHost().memory.noteFailedLock(handle);
}

A_Err UnlockMemHandle(AEGP_MemHandle handle) {
  if (TheHost().memory.unlock(handle)) return A_Err_NONE;
  return SuiteCall::current().misused(Finding::unlockedTooOften, "the handle isn't locked");
}

A_Err GetMemHandleSize(AEGP_MemHandle handle, AEGP_MemSize* size) {
  *size = static_cast<AEGP_MemSize>(TheHost().memory.size(handle));
  return A_Err_NONE;
}

A_Err ResizeMemHandle(const A_char*, AEGP_MemSize size, AEGP_MemHandle handle) {
  if (TheHost().memory.isLocked(handle)) {
    return SuiteCall::current().misused(Finding::badArgument,
                                        "the handle is locked, and its memory would move");
  }
  return TheHost().memory.resize(handle, size) ? A_Err{A_Err_NONE} : A_Err{A_Err_GENERIC};
}

A_Err GetMemStats(AEGP_PluginID, A_long* count, A_long* size) {
  *count = static_cast<A_long>(TheHost().memory.handleCount());
  *size = static_cast<A_long>(TheHost().memory.totalSize());
  return A_Err_NONE;
}

using Free = Body<FreeMemHandle, Order::workFirst>;
using Lock = Body<LockMemHandle, Order::faultFirst, NoteFailedLock>;
using Unlock = Body<UnlockMemHandle, Order::workFirst>;

}  // namespace

const AEGP_MemorySuite1 kMemorySuite1{
    SUPPLIED(memory1, AEGP_NewMemHandle, Body<NewMemHandle>, "aegp_plugin_id", "whatZ", "size",
             "flags", "memPH"),
    SUPPLIED(memory1, AEGP_FreeMemHandle, Free, "memH"),
    SUPPLIED(memory1, AEGP_LockMemHandle, Lock, "memH", "ptr_to_ptr"),
    SUPPLIED(memory1, AEGP_UnlockMemHandle, Unlock, "memH"),
    SUPPLIED(memory1, AEGP_GetMemHandleSize, Body<GetMemHandleSize>, "memH", "sizeP"),
    SUPPLIED(memory1, AEGP_ResizeMemHandle, Body<ResizeMemHandle>, "whatZ", "new_size", "memH"),
    NOT_SUPPLIED(memory1, AEGP_SetMemReportingOn),
    SUPPLIED(memory1, AEGP_GetMemStats, Body<GetMemStats>, "aegp_plugin_id", "countPL", "sizePL"),
};

}  // namespace host
