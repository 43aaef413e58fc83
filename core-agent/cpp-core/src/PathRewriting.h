#pragma once

#include <string>

/// The encodings in which the bytes of a path are tried.
enum class PathEncoding { kUTF8, kMacOSRoman };

/// What became of a path that the platform was given to read, expand and write.
struct PathRewriting {
  enum class Outcome {
    kRewritten,  // `text` is the new path
    kNotText,    // the bytes aren't text in that encoding
    kFailed,     // the platform raised an exception; `text` describes it
  };
  Outcome outcome;
  std::string text;
};

/// Reads the bytes up to the NUL as text in `encoding`, replaces a tilde at its start by the full
/// path that it stands for, and gives the result in the form that file system calls take.
///
/// The platform's half of `GFileSystem::OSExpandPath`, which calls it inside a scope for the
/// platform's own memory. The platform's exceptions end here, as `kFailed`; others pass.
PathRewriting OSRewritePath(const char* bytes, PathEncoding encoding);
