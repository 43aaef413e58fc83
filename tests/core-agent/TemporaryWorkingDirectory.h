#pragma once

#include <filesystem>
#include <string>

/// A temporary folder that is the working directory while it lives.
class TemporaryWorkingDirectory {
 public:
  TemporaryWorkingDirectory();
  ~TemporaryWorkingDirectory();
  TemporaryWorkingDirectory(const TemporaryWorkingDirectory&) = delete;
  TemporaryWorkingDirectory& operator=(const TemporaryWorkingDirectory&) = delete;

  std::string path() const { return mPath.string(); }

  /// Removes the folder and stays in it.
  void Remove();

 private:
  std::filesystem::path mPath;
  std::filesystem::path mPrevious;
};
