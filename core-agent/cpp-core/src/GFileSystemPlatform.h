#pragma once

#include <string>

// Platform function of `GFileSystem::OSExpandPath`.

/// An encoding of a path.
enum class PathEncoding { kUTF8, kMacOSRoman };

/// The outcome of `OSExpandTilde`.
struct PathExpansion {
  enum Outcome { kExpanded, kNotText, kFailed } outcome = kNotText;
  /// For `kExpanded` the path, as file system calls take it. For `kFailed` a description.
  std::string text;
};

/// Replaces a tilde at the start of the path with a home directory. Returns `kNotText` if the bytes
/// up to the NUL aren't text in that encoding. Call it inside a `GScopedManagedMemory`.
PathExpansion OSExpandTilde(const char* bytes, PathEncoding encoding);
