#pragma once

/// Opens the framework at the UTF-8 `path`, relative to the working directory if it isn't absolute.
/// Returns its handle, or null if there is none. On macOS, a framework that can't be loaded also
/// has a handle, but no exports. The framework stays loaded until the process ends. Writes the
/// version that it declares to `versionOut`, cut to `versionOutSize` bytes with the terminating
/// NUL. Leaves `versionOut` untouched if it declares none.
void* LoadDllOrFramework(const char* path, char* versionOut, unsigned int versionOutSize);

/// Returns the address of the export `name` in `bundle`, a handle from `LoadDllOrFramework`; null
/// if it has none, or if `bundle` is null.
void* GetFunctionPtr(void* bundle, const char* name);

// For the platforms' halves and the callers' own traces.

/// Returns what a trace shows of a handle or an address.
unsigned int LowBits(const void* pointer);

/// Traces an attempt to open. `bundle` is null if it failed.
void TraceFrameworkOpened(const void* bundle, const char* path);

/// Traces a look-up. `function` is null if the framework lacks the export.
void TraceExportLookedUp(const void* bundle, const char* name, const void* function);
