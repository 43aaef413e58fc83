#pragma once

#include <filesystem>

#include "Session.h"

namespace host {

/// A new temporary folder with the files of a session. Removes it when it is destroyed, unless it
/// is to be kept.
class SessionFolder {
 public:
  /// Throws `std::runtime_error` if a file can't be put in place.
  SessionFolder(const FolderSetup& setup, bool keep);
  ~SessionFolder();
  SessionFolder(const SessionFolder&) = delete;
  SessionFolder& operator=(const SessionFolder&) = delete;

  const std::filesystem::path& path() const { return mPath; }

 private:
  explicit SessionFolder(bool keep);

  bool mKeep;
  std::filesystem::path mPath;
};

}  // namespace host
