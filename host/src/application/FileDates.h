#pragma once

#include <ctime>
#include <filesystem>
#include <map>
#include <string>

namespace host {

/// Gives each file that is written in a folder the virtual time as its date, because the kernel
/// gives it the real one. A date that the plug-in sets stays. Does nothing where the kernel can't
/// watch folders.
class FileDates {
 public:
  FileDates();
  ~FileDates();
  FileDates(const FileDates&) = delete;
  FileDates& operator=(const FileDates&) = delete;

  /// Watches the folder, and all folders in it from now on.
  void watch(const std::filesystem::path& folder);
  /// Sets the dates of the files written since the last call. Makes one system call if there is
  /// none.
  void update();

 private:
  void setDate(const std::filesystem::path& file) const;
  void setDatesBelow(const std::filesystem::path& folder) const;

  timespec mStart;  ///< no date that the kernel has given since is earlier
  int mEvents = -1;
  std::map<int, std::filesystem::path> mFolders;
};

}  // namespace host
