#pragma once

#include <filesystem>
#include <list>

#include "HelperProcess.h"
#include "Janitor.h"
#include "Session.h"

namespace host {

/// A new temporary folder with the files of a session, and the processes that run beside it. Ends
/// the processes when it is destroyed, and removes the folder unless it is to be kept.
class SessionFolder {
 public:
  /// Throws `std::runtime_error` if a file can't be put in place or a process can't be started.
  SessionFolder(const FolderSetup& setup, const Janitor& janitor, bool keep);
  ~SessionFolder();
  SessionFolder(const SessionFolder&) = delete;
  SessionFolder& operator=(const SessionFolder&) = delete;

  const std::filesystem::path& path() const { return mPath; }

 private:
  void fill(const FolderSetup& setup);
  void remove();

  const Janitor& mJanitor;
  bool mKeep;
  std::filesystem::path mPath;
  std::list<HelperProcess> mProcesses;
};

}  // namespace host
