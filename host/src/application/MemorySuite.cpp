#include "Host.h"
#include "HostCall.h"
#include "SuiteTables.h"

namespace host {
namespace {

A_Err NewMemHandle(AEGP_PluginID id, const A_char* what, AEGP_MemSize size, AEGP_MemFlag flags,
                   AEGP_MemHandle* handle) {
  HostCall call(SuiteId::memory1, "AEGP_NewMemHandle", int64_t{id}, what, int64_t{size},
                int64_t{flags}, handle);
  call.needsPluginId(id);
  call.needs(what, "whatZ");
  call.needs(handle, "memPH");
  if (const A_Err error = call.error()) return error;
  const AEGP_MemHandle made = TheHost().memory.make(size, TheHost().origin("AEGP_NewMemHandle"));
  if (!made) return A_Err_GENERIC;
  *handle = made;
  return A_Err_NONE;
}

// This one and `UnlockMemHandle` do their work before they fail for the session, so that a leak at
// the end is the plug-in's and not the fault's.
A_Err FreeMemHandle(AEGP_MemHandle handle) {
  HostCall call(SuiteId::memory1, "AEGP_FreeMemHandle", handle);
  if (!call.needsMemory(handle) || call.misuse() != A_Err_NONE) return call.misuse();
  if (TheHost().memory.isLocked(handle)) {
    call.misused(Finding::lockedHandleFreed, "the handle is locked");
  }
  TheHost().memory.free(handle);
  return call.error();
}

A_Err LockMemHandle(AEGP_MemHandle handle, void** start) {
  HostCall call(SuiteId::memory1, "AEGP_LockMemHandle", handle, start);
  call.needsMemory(handle);
  call.needs(start, "ptr_to_ptr");
  if (call.misuse() != A_Err_NONE) return call.misuse();
  if (const A_Err fault = call.fault()) {
    TheHost().memory.noteFailedLock(handle);
    return fault;
  }
  *start = TheHost().memory.lock(handle);
  return A_Err_NONE;
}

A_Err UnlockMemHandle(AEGP_MemHandle handle) {
  HostCall call(SuiteId::memory1, "AEGP_UnlockMemHandle", handle);
  if (!call.needsMemory(handle) || call.misuse() != A_Err_NONE) return call.misuse();
  if (!TheHost().memory.unlock(handle)) {
    call.misused(Finding::unlockedTooOften, "the handle isn't locked");
  }
  return call.error();
}

A_Err GetMemHandleSize(AEGP_MemHandle handle, AEGP_MemSize* size) {
  HostCall call(SuiteId::memory1, "AEGP_GetMemHandleSize", handle, size);
  call.needsMemory(handle);
  call.needs(size, "sizeP");
  if (const A_Err error = call.error()) return error;
  *size = static_cast<AEGP_MemSize>(TheHost().memory.size(handle));
  return A_Err_NONE;
}

A_Err ResizeMemHandle(const A_char* what, AEGP_MemSize size, AEGP_MemHandle handle) {
  HostCall call(SuiteId::memory1, "AEGP_ResizeMemHandle", what, int64_t{size}, handle);
  call.needs(what, "whatZ");
  if (call.needsMemory(handle) && call.misuse() == A_Err_NONE &&
      TheHost().memory.isLocked(handle)) {
    call.misused(Finding::badArgument, "the handle is locked, and its memory would move");
  }
  if (const A_Err error = call.error()) return error;
  return TheHost().memory.resize(handle, size) ? A_Err{A_Err_NONE} : A_Err{A_Err_GENERIC};
}

A_Err GetMemStats(AEGP_PluginID id, A_long* count, A_long* size) {
  HostCall call(SuiteId::memory1, "AEGP_GetMemStats", int64_t{id}, count, size);
  call.needsPluginId(id);
  call.needs(count, "countPL");
  call.needs(size, "sizePL");
  if (const A_Err error = call.error()) return error;
  *count = static_cast<A_long>(TheHost().memory.count());
  *size = static_cast<A_long>(TheHost().memory.totalSize());
  return A_Err_NONE;
}

}  // namespace

const AEGP_MemorySuite1 kMemorySuite1{
    .AEGP_NewMemHandle = NewMemHandle,
    .AEGP_FreeMemHandle = FreeMemHandle,
    .AEGP_LockMemHandle = LockMemHandle,
    .AEGP_UnlockMemHandle = UnlockMemHandle,
    .AEGP_GetMemHandleSize = GetMemHandleSize,
    .AEGP_ResizeMemHandle = ResizeMemHandle,
    NOT_SUPPLIED(memory1, AEGP_SetMemReportingOn),
    .AEGP_GetMemStats = GetMemStats,
};

}  // namespace host
