#pragma once

#include <filesystem>
#include <list>

#include "HelperProcess.h"
#include "Session.h"

namespace host {

/// A new temporary folder with the files of a session, and the processes that run beside it.
/// Removes the folder and ends the processes when it is destroyed.
class SessionFolder {
 public:
  /// `fontManager` is the folder of the font manager's frameworks and executables, or empty. Throws
  /// `std::runtime_error` if a file can't be put in place or a process can't be started.
  SessionFolder(const SessionFolderSetup& setup, const std::filesystem::path& fontManager);
  ~SessionFolder();
  SessionFolder(const SessionFolder&) = delete;
  SessionFolder& operator=(const SessionFolder&) = delete;

  const std::filesystem::path& path() const { return mPath; }

 private:
  void fill(const SessionFolderSetup& setup, const std::filesystem::path& fontManager);
  void placeFramework(const SessionFolderSetup& setup, const std::filesystem::path& fontManager);

  std::filesystem::path mPath;
  std::list<HelperProcess> mProcesses;
};

}  // namespace host
