#pragma once

#include <cstdint>
#include <string>

/// A full path, edited one component at a time.
///
/// The path is empty, or "/", or begins with "/" and doesn't end with it. Doubled separators
/// inside it, "." and ".." are kept. No operation touches the disk. Nothing throws, except when
/// memory runs out. Failures are logged in the category "FileSystem". A value belongs to one thread
/// at a time.
class GFileSystemSpec {
 public:
  /// The empty value.
  GFileSystemSpec() = default;

  /// Takes a path that may be quoted, begin with a tilde or be partial. Appends a partial path to
  /// the working directory, so "" gives the working directory. If that is gone, "" gives the empty
  /// value and "a/b" gives "/a/b". A path that the platform can't expand counts as "". `path` must
  /// not be null.
  explicit GFileSystemSpec(const char* path);

  /// Sets the path to a full path, or to one that begins with a tilde. "" clears it.
  ///
  /// Returns 0, `CoreErrorCodes::kInvalidParam` for a partial path, or the code of
  /// `GFileSystem::OSExpandPath`. Leaves the value unchanged on failure.
  uint32_t SetFullPath(const std::string& path);

  /// Appends one or more components: "/a" with "/x/y/" gives "/a/x/y". Ignores an empty component.
  /// Returns this value, unchanged after a failure.
  GFileSystemSpec& AppendPathComponent(const std::string& component);

  /// Removes the last component: "/a/b" gives "/a", then "/", then the empty value. Returns this
  /// value.
  GFileSystemSpec& RemoveLastPathComponent();

  /// Returns the last component of this value. The root and the empty value give "".
  std::string GetLastPathComponent() const;

  /// Returns the last component of any path: "/a/b/" gives "b", "name" gives "name".
  static std::string GetLastPathComponent(const std::string& path);

  /// Returns a copy of the path.
  std::string GetFullPath() const { return mFullPath; }
  operator std::string() const { return mFullPath; }

 private:
  std::string mFullPath;
};
