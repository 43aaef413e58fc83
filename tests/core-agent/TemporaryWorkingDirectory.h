#pragma once

#include "TemporaryFolder.h"

/// A temporary folder that becomes the working directory for the rest of the process.
class TemporaryWorkingDirectory : public TemporaryFolder {
 public:
  TemporaryWorkingDirectory() { std::filesystem::current_path(path()); }

  /// Its path as the system gives it.
  std::string FullPath() const { return std::filesystem::canonical(path()); }

  /// Removes the folder and stays in it.
  void Remove() { std::filesystem::remove_all(path()); }
};
