#pragma once

/// Opens the framework at the UTF-8 `path` and returns its handle, or null when there is none. The
/// handle is never released: the framework stays loaded until the process ends. The version that
/// the framework declares goes to `versionOut`, cut to `versionOutSize` bytes with the terminating
/// NUL among them; without one `versionOut` stays untouched. A relative path is resolved against
/// the working directory.
void* LoadDllOrFramework(const char* path, char* versionOut, unsigned int versionOutSize);

/// The address of the export `name`, or null; null also for a null `bundle`. `bundle` is a handle
/// from `LoadDllOrFramework`.
void* GetFunctionPtr(void* bundle, const char* name);
