#pragma once

#include "TemporaryFolder.h"

/// A temporary folder, and the working directory for the rest of the process.
class TemporaryWorkingDirectory : public TemporaryFolder {
 public:
  TemporaryWorkingDirectory() { std::filesystem::current_path(path()); }

  /// Returns its path without symbolic links, as `getcwd` does.
  std::string FullPath() const { return std::filesystem::canonical(path()); }

  /// Removes the folder, but stays in it.
  void Remove() { std::filesystem::remove_all(path()); }
};
