#pragma once

#include <filesystem>
#include <list>

#include "HelperProcess.h"
#include "Session.h"

namespace host {

/// A fresh folder with everything that a session needs, and the processes that run beside it. Both
/// are gone with this object.
class SessionFolder {
 public:
  /// `fontManager` holds the font manager's framework, its variants and its executables; empty for
  /// none. Throws `std::runtime_error` when something can't be put in place.
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
