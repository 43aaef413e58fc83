#include "GetPathToRunningProcess.h"

#include <cstring>
#include <fstream>

#include "CoreErrorCodes.h"
#include "DebugUtils.h"
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
  uint32_t code = CoreErrorCodes::kUnknownError;
  for (const std::string& path : GetRunningExecutables()) {
    GFileSystemSpec executable(path.c_str());
    if (executable.GetLastPathComponent() != processName) continue;
    if (code != CoreErrorCodes::kSuccess) {
      folder = executable.RemoveLastPathComponent().GetFullPath() + "/";
      code = CoreErrorCodes::kSuccess;
    }
    // The first decides. The trace names the others, too.
    if (!TraceIsOn()) break;
    OutputIndentedAndFormattedString(0, "Running: '%s'", path.c_str());
  }
  if (TraceIsOn() && code != CoreErrorCodes::kSuccess) {
    OutputIndentedAndFormattedString(0, "No running process is named '%s'", processName.c_str());
  }
  return code;
}

uint32_t GetConfiguredPath(const std::string& folderName, const std::string& fileName,
                           const std::string& key, std::string& value) {
  std::string path;
  GetUsersAppDataDirectory(path);
  // Without a library folder, the path would begin at the root.
  if (path.empty()) return CoreErrorCodes::kUnknownError;
  path += "/" + folderName + "/" + fileName;
  std::ifstream stream(path, std::ios::binary);
  if (TraceIsOn()) {
    OutputIndentedAndFormattedString(0, "Launch-info file '%s': %s", path.c_str(),
                                     stream.is_open() ? "opened" : "can't be opened");
  }
  return ReadConfiguredValue(stream, key, value) ? CoreErrorCodes::kSuccess
                                                 : CoreErrorCodes::kUnknownError;
}

bool ReadConfiguredValue(std::istream& stream, const std::string& key, std::string& value) {
  for (std::string line; std::getline(stream, line);) {
    if (line.find(key) != std::string::npos && GetValueAtEndOfThisLine(line.c_str(), &value)) {
      if (TraceIsOn()) {
        OutputIndentedAndFormattedString(0, "Its line '%s' gives '%s'", line.c_str(),
                                         value.c_str());
      }
      return true;
    }
  }
  return false;
}
