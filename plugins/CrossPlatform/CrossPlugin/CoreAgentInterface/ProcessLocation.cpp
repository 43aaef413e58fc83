#include "ProcessLocation.h"

#include <cstring>

#include "GFileSystemSpec.h"

namespace {

// False, with `value` untouched, when the line has no value.
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

bool GetFolderIfExecutableIs(const std::string& processName, const char* executablePath,
                             std::string& folder) {
  GFileSystemSpec executable(executablePath);
  if (executable.GetLastPathComponent() != processName) return false;
  folder = executable.RemoveLastPathComponent().GetFullPath() + "/";
  return true;
}

bool ReadConfiguredValue(std::istream& stream, const std::string& key, std::string& value) {
  std::string line;
  while (std::getline(stream, line)) {
    if (line.find(key) != std::string::npos && GetValueAtEndOfThisLine(line.c_str(), &value)) {
      return true;
    }
  }
  return false;
}
