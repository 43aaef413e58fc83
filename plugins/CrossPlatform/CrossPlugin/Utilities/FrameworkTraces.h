#pragma once

// What opening a framework traces on every platform. Handles and addresses are shown by their low
// 32 bits.

/// `bundle` is null when there is none at `path`.
void TraceFrameworkOpened(const void* bundle, const char* path);

/// `function` is null when the framework lacks the export `name`.
void TraceExportLookedUp(const void* bundle, const char* name, const void* function);
