#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <vector>

#include "CoreErrorCodes.h"
#include "GFileSystem.h"
#include "GetPathToRunningProcess.h"
#include "ProcessLocation.h"

namespace {

namespace fs = std::filesystem;

// In ascending order of process id.
std::vector<int> RunningProcessIDs() {
  std::vector<int> pids;
  std::error_code error;
  for (fs::directory_iterator entry("/proc", error), end; !error && entry != end;
       entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    int pid = 0;
    const auto [rest, failure] = std::from_chars(name.data(), name.data() + name.size(), pid);
    if (failure == std::errc() && rest == name.data() + name.size()) pids.push_back(pid);
  }
  std::sort(pids.begin(), pids.end());
  return pids;
}

// Leaves `directory` unchanged when the home directory can't be had.
void GetUsersAppDataDirectory(std::string& directory) {
  std::string library = "~/Library";
  if (GFileSystem::OSExpandPath(library) == CoreErrorCodes::kSuccess) directory = library;
}

}  // namespace

uint32_t GetPathToRunningProcessExe(const std::string& processName, std::string& folder) {
  for (const int pid : RunningProcessIDs()) {
    std::error_code error;
    const fs::path executable = fs::read_symlink("/proc/" + std::to_string(pid) + "/exe", error);
    // Processes of other users can't be read, and the system's own have no executable.
    if (error) continue;
    if (GetFolderIfExecutableIs(processName, executable.c_str(), folder)) {
      return CoreErrorCodes::kSuccess;
    }
  }
  return CoreErrorCodes::kUnknownError;
}

uint32_t GetConfiguredPath(const std::string& folderName, const std::string& fileName,
                           const std::string& key, std::string& value) {
  std::string path;
  GetUsersAppDataDirectory(path);
  path += "/" + folderName + "/" + fileName;
  std::ifstream stream(path, std::ios::binary);
  return ReadConfiguredValue(stream, key, value) ? CoreErrorCodes::kSuccess
                                                 : CoreErrorCodes::kUnknownError;
}
