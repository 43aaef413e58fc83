#pragma once

#include <string>

// The platform's part of `GFileSystem::OSExpandPath`. Each half defines it.

/// The encodings that a path is read in.
enum class PathEncoding { kUTF8, kMacOSRoman };

/// What `OSExpandTilde` returns.
struct PathExpansion {
  enum Outcome { kExpanded, kNotText, kFailed } outcome = kNotText;
  /// The path in the bytes that file system calls take, or the description of the failure.
  std::string text;
};

/// Reads the bytes up to the NUL as text in the encoding, and replaces a tilde at its start by the
/// full path that it stands for. Returns `kNotText` if the bytes aren't text in that encoding.
///
/// Objects of the platform die with the caller's `GScopedManagedMemory`.
PathExpansion OSExpandTilde(const char* bytes, PathEncoding encoding);
