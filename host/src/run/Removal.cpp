#include "Removal.h"

#include <sys/stat.h>

#include <system_error>

namespace host {
namespace {

namespace fs = std::filesystem;

void OpenFolders(const fs::path& folder) {
  if (!fs::is_directory(fs::symlink_status(folder))) return;
  chmod(folder.c_str(), S_IRWXU);
  std::error_code ignored;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder, ignored)) {
    OpenFolders(entry.path());
  }
}

}  // namespace

bool RemoveWholly(const fs::path& path) {
  std::error_code error;
  fs::remove_all(path, error);
  if (!error) return true;
  OpenFolders(path);
  fs::remove_all(path, error);
  return !error;
}

}  // namespace host
