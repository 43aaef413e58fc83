#include "GetPathToRunningProcess.h"

#include <cstring>
#include <fstream>

#include "CoreErrorCodes.h"
#include "GFileSystemSpec.h"

namespace {

bool GetValueAtEndOfThisLine(const char* line, std::string* value) {
  const char* equals = std::strchr(line, '=');
  if (!equals) return false;
  const char* end = std::strchr(line, '\r');
  if (!end) end = std::strchr(line, '\n');
  if (!end) end = line + std::strlen(line);
  if (end <= equals) return false;
  value->assign(equals + 1, end);
  return true;
}

}  // namespace

uint32_t GetPathToRunningProcessExe(const std::string& processName, std::string& folder) {
  for (const std::string& path : GetRunningExecutables()) {
    GFileSystemSpec executable(path.c_str());
    if (executable.GetLastPathComponent() != processName) continue;
    folder = executable.RemoveLastPathComponent().GetFullPath() + "/";
    return CoreErrorCodes::kSuccess;
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

bool ReadConfiguredValue(std::istream& stream, const std::string& key, std::string& value) {
  for (std::string line; std::getline(stream, line);) {
    if (line.find(key) != std::string::npos && GetValueAtEndOfThisLine(line.c_str(), &value)) {
      return true;
    }
  }
  return false;
}
