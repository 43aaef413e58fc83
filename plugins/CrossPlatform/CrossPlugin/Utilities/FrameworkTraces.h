#pragma once

// What finding and opening a framework traces on every platform. Handles and addresses are shown by
// their low 32 bits.

/// `bundle` is null when there is none at `path`.
void TraceFrameworkOpened(const void* bundle, const char* path);

/// Ends the search and its indent. `instance` is null when no framework could be opened.
void TraceSharedInstance(const void* instance);

/// `function` is null when the framework lacks the export `name`.
void TraceExportLookedUp(const void* bundle, const char* name, const void* function);
