#include "DllFrameworkUtils.h"

#include <cstdint>

#include "DebugUtils.h"

unsigned int LowBits(const void* pointer) {
  return static_cast<unsigned int>(reinterpret_cast<uintptr_t>(pointer));
}

void TraceFrameworkOpened(const void* bundle, const char* path) {
  OutputIndentedAndFormattedString(
      0, "CFBundleCreate() returned 0x%08x on attempt to load plug-in interface from '%s'",
      LowBits(bundle), path);
}

void TraceExportLookedUp(const void* bundle, const char* name, const void* function) {
  OutputIndentedAndFormattedString(
      0, "CFBundleGetFunctionPointerForName(0x%08x, '%s') returned 0x%08x", LowBits(bundle), name,
      LowBits(function));
}
