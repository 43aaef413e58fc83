#pragma once

#include <cstdint>
#include <string>

class GFileSystemSpec;

/// The path operations that depend on the operating system.
///
/// A path is bytes that are meant to be UTF-8. No state and no lock: any thread. Nothing throws
/// beyond what running out of memory does; failures are logged in the category "FileSystem".
class GFileSystem {
 public:
  /// A path that the platform can't turn into text or expand.
  static constexpr uint32_t kInvalidCharacterForFileSystemRepresentation = 0x0C001005;

  /// The text that separates two components.
  static std::string OSGetPathSeparator();

  /// Whether `path` begins at the root. If it does, its trailing separators are removed, except
  /// that the root itself stays; a longer run of nothing but separators becomes empty.
  static bool OSIsValidFullPath(std::string& path);

  /// Whether `path` doesn't begin at the root. "" and "~/x" don't.
  static bool OSIsPartialPath(const std::string& path);

  /// The working directory of the process; the empty value, and an entry in the log, if it is gone.
  static GFileSystemSpec OSGetCWD();

  /// Replaces a tilde at the start by the home directory that it stands for, whose bytes are taken
  /// as they are, and reads a path that isn't UTF-8 as Mac OS Roman, all of it; a relative path
  /// stays relative.
  ///
  /// The path is read up to its first NUL. Returns 0, or
  /// `kInvalidCharacterForFileSystemRepresentation` with entries in the log: `path` is then empty
  /// where the platform failed, and as it was where it isn't text in either encoding.
  static uint32_t OSExpandPath(std::string& path);
};
