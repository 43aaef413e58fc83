#pragma once

#include <cstdint>
#include <string>

/// A full path, edited one component at a time.
///
/// The path is empty (no path), or "/", or begins with "/" and doesn't end with it. Separators
/// inside it, "." and ".." stay as they are, and the disk is never touched. Nothing throws beyond
/// what running out of memory does; failures are logged in the category "FileSystem". A value
/// belongs to one thread at a time.
class GFileSystemSpec {
 public:
  /// The empty value.
  GFileSystemSpec() = default;

  /// Takes a path that may be quoted, begin with a tilde or be partial; a partial one is put behind
  /// the working directory, so "" gives the working directory. A path that the platform fails to
  /// expand counts as "". Without a working directory "" gives the empty value and "a/b" gives
  /// "/a/b". `path` must not be null.
  explicit GFileSystemSpec(const char* path);

  /// Replaces the path by a full one or one with a tilde; "" clears it.
  ///
  /// Returns 0, `CoreErrorCodes::kInvalidParam` for a partial path or the code of
  /// `GFileSystem::OSExpandPath`; the value stays as it was unless the code is 0.
  uint32_t SetFullPath(const std::string& path);

  /// Adds a component, or several that are separated already: "/a" with "/x/y/" gives "/a/x/y".
  /// Does nothing for an empty one. Returns this value, also where that failed.
  GFileSystemSpec& AppendPathComponent(const std::string& component);

  /// Goes one level up: "/a/b" gives "/a", then "/", then the empty value. Returns this value.
  GFileSystemSpec& RemoveLastPathComponent();

  /// The last component of this value; empty for the root and the empty value.
  std::string GetLastPathComponent() const;

  /// The last component of any path: "/a/b/" gives "b", "name" gives "name".
  static std::string GetLastPathComponent(const std::string& path);

  /// A copy of the path.
  std::string GetFullPath() const { return mFullPath; }
  operator std::string() const { return mFullPath; }

 private:
  std::string mFullPath;
};
