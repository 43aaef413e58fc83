#pragma once

#include <cstdint>
#include <string>

class GFileSystemSpec;

/// Path operations that depend on the operating system.
///
/// A path is a string of bytes, normally UTF-8. Nothing throws, except when memory runs out.
/// Failures are logged in the category "FileSystem". Any thread.
class GFileSystem {
 public:
  /// The platform can't read the path as text, or can't expand it.
  static constexpr uint32_t kInvalidCharacterForFileSystemRepresentation = 0x0C001005;

  /// Returns the text that separates two components, "/".
  static std::string OSGetPathSeparator();

  /// Returns whether `path` begins at the root, and removes its trailing separators if it does:
  /// "/a/b//" becomes "/a/b". The root "/" stays, but "//" becomes empty.
  static bool OSIsValidFullPath(std::string& path);

  /// Returns whether `path` doesn't begin at the root. "" and "~/x" are partial.
  static bool OSIsPartialPath(const std::string& path);

  /// Returns the working directory of the process. If it is gone, returns the empty value and logs
  /// a failed check.
  static GFileSystemSpec OSGetCWD();

  /// Replaces a tilde at the start with a home directory: "~/x" becomes "/home/ann/x". A relative
  /// path stays relative. Reads a path that isn't UTF-8 as Mac OS Roman, and makes it UTF-8.
  ///
  /// Reads `path` up to its first NUL. Returns 0. On failure, logs it and returns
  /// `kInvalidCharacterForFileSystemRepresentation`. `path` is then unchanged if it isn't text in
  /// either encoding, and empty if the platform failed.
  static uint32_t OSExpandPath(std::string& path);
};
