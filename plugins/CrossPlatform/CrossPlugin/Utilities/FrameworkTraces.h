#pragma once

// What opening a framework traces on every platform.

/// What a trace shows of a handle or an address.
unsigned int LowBits(const void* pointer);

/// `bundle` is null when there is none at `path`.
void TraceFrameworkOpened(const void* bundle, const char* path);

/// `function` is null when the framework lacks the export `name`.
void TraceExportLookedUp(const void* bundle, const char* name, const void* function);
