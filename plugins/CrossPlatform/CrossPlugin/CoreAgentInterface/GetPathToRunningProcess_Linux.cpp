#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <filesystem>

#include "CoreErrorCodes.h"
#include "GFileSystem.h"
#include "GetPathToRunningProcess.h"

namespace {

namespace fs = std::filesystem;

// In ascending order. Only those of this process's session, so that two runs on one machine don't
// find each other's processes.
std::vector<int> RunningProcessIDs() {
  const pid_t session = getsid(0);
  std::vector<int> pids;
  std::error_code error;
  for (fs::directory_iterator entry("/proc", error), end; !error && entry != end;
       entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    int pid = 0;
    const auto [rest, failure] = std::from_chars(name.data(), name.data() + name.size(), pid);
    const bool isProcess = failure == std::errc() && rest == name.data() + name.size();
    if (isProcess && getsid(pid) == session) pids.push_back(pid);
  }
  std::sort(pids.begin(), pids.end());
  return pids;
}

}  // namespace

std::vector<std::string> GetRunningExecutables() {
  std::vector<std::string> executables;
  for (const int pid : RunningProcessIDs()) {
    std::error_code error;
    const fs::path executable = fs::read_symlink("/proc/" + std::to_string(pid) + "/exe", error);
    // One that has ended meanwhile, or another user's, can't be read.
    if (!error) executables.push_back(executable);
  }
  return executables;
}

void GetUsersAppDataDirectory(std::string& directory) {
  std::string library = "~/Library";
  if (GFileSystem::OSExpandPath(library) == CoreErrorCodes::kSuccess) directory = library;
}
