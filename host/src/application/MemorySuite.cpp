#include "Host.h"
#include "SuiteTables.h"

// `AEGP_FreeMemHandle` and `AEGP_UnlockMemHandle` do their work before they fail, so that a leak at
// the end is the plug-in's and not the fault's.

namespace host {
namespace {

A_Err FreeMemHandle(AEGP_MemHandle handle) {
  const A_Err result = TheHost().memory.free(handle);
  const A_Err fault = Fault("AEGP_FreeMemHandle");
  return fault ? fault : result;
}

A_Err LockMemHandle(AEGP_MemHandle handle, void** start) {
  if (const A_Err fault = Fault("AEGP_LockMemHandle")) {
    TheHost().memory.noteFailedLock(handle);
    return fault;
  }
  return TheHost().memory.lock(handle, start);
}

A_Err UnlockMemHandle(AEGP_MemHandle handle) {
  const A_Err result = TheHost().memory.unlock(handle);
  const A_Err fault = Fault("AEGP_UnlockMemHandle");
  return fault ? fault : result;
}

}  // namespace

const AEGP_MemorySuite1 kMemorySuite1{
    NOT_SUPPLIED(AEGP_NewMemHandle),      .AEGP_FreeMemHandle = FreeMemHandle,
    .AEGP_LockMemHandle = LockMemHandle,  .AEGP_UnlockMemHandle = UnlockMemHandle,
    NOT_SUPPLIED(AEGP_GetMemHandleSize),  NOT_SUPPLIED(AEGP_ResizeMemHandle),
    NOT_SUPPLIED(AEGP_SetMemReportingOn), NOT_SUPPLIED(AEGP_GetMemStats),
};

}  // namespace host
