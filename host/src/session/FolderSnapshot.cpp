#include "FolderSnapshot.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <fstream>
#include <optional>
#include <sstream>
#include <vector>

#include "Removal.h"
#include "TextFile.h"

namespace host {
namespace {

namespace fs = std::filesystem;

std::optional<std::string> ReadBytes(const fs::path& file) {
  const std::ifstream stream(file, std::ios::binary);
  if (!stream) return {};
  std::ostringstream bytes;
  bytes << stream.rdbuf();
  return bytes.str();
}

timespec DateOf(const fs::path& file) {
  struct stat status {};
  stat(file.c_str(), &status);
  return status.st_mtim;
}

// Without what is in folders that a plug-in has closed to readers.
fs::recursive_directory_iterator Walk(const fs::path& folder) {
  return fs::recursive_directory_iterator(folder, fs::directory_options::skip_permission_denied);
}

bool IsSame(const timespec& one, const timespec& other) {
  return one.tv_sec == other.tv_sec && one.tv_nsec == other.tv_nsec;
}

}  // namespace

FolderSnapshot::FolderSnapshot(const fs::path& folder) : mFolder(folder) {
  for (const fs::directory_entry& entry : Walk(folder)) {
    if (!entry.is_symlink() && entry.is_directory()) {
      mFolders.insert(entry.path());
    } else if (!entry.is_symlink() && entry.is_regular_file()) {
      mFiles[entry.path()] = {ReadBytes(entry.path()).value_or(""), DateOf(entry.path())};
    } else {
      mOthers.insert(entry.path());
    }
  }
}

bool FolderSnapshot::knows(const fs::directory_entry& entry) const {
  if (entry.is_symlink()) return mOthers.contains(entry.path());
  if (entry.is_directory()) return mFolders.contains(entry.path());
  return (entry.is_regular_file() && mFiles.contains(entry.path())) ||
         mOthers.contains(entry.path());
}

void FolderSnapshot::removeOthers() const {
  std::vector<fs::path> others;
  for (const fs::directory_entry& entry : Walk(mFolder)) {
    if (!knows(entry)) others.push_back(entry.path());
  }
  for (const fs::path& path : others) RemoveWholly(path);
}

void FolderSnapshot::restore() const {
  removeOthers();
  for (const fs::path& folder : mFolders) fs::create_directories(folder);
  for (const auto& [path, file] : mFiles) {
    if (ReadBytes(path) != file.bytes) WriteText(path, file.bytes);
    if (IsSame(DateOf(path), file.date)) continue;
    const std::array<timespec, 2> dates{file.date, file.date};
    if (utimensat(AT_FDCWD, path.c_str(), dates.data(), 0) != 0) {
      throw fs::filesystem_error("can't set the date of", path,
                                 std::error_code(errno, std::generic_category()));
    }
  }
}

}  // namespace host
