#pragma once

#include <time.h>

#include <filesystem>
#include <map>
#include <set>
#include <string>

namespace host {

/// The folders and files of a folder at one moment. Doesn't follow links. Brings back only folders
/// and regular files.
class FolderSnapshot {
 public:
  /// Throws `std::filesystem::filesystem_error`, as `restore` does.
  explicit FolderSnapshot(const std::filesystem::path& folder);
  /// Makes the folder the same again. Files that are open somewhere stay so, with their new
  /// contents.
  void restore() const;

 private:
  struct File {
    std::string bytes;
    timespec date{};
  };

  bool knows(const std::filesystem::directory_entry& entry) const;
  void removeOthers() const;

  std::filesystem::path mFolder;
  std::map<std::filesystem::path, File> mFiles;
  std::set<std::filesystem::path> mFolders;
  std::set<std::filesystem::path> mOthers;  ///< links and the like
};

}  // namespace host
