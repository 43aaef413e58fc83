#include <unistd.h>

#include <array>
#include <climits>

#include "CppCoreMacros.h"
#include "GFileSystem.h"
#include "GFileSystemSpec.h"
#include "GLogger.h"
#include "GScopedManagedMemory.h"
#include "GStringUtils.h"
#include "PathRewriting.h"

namespace {

// The part of `OSExpandPath` that runs while the platform's memory scope is open.
uint32_t ExpandInScope(std::string& path) {
  PathRewriting result = OSRewritePath(path.c_str(), PathEncoding::kUTF8);
  if (result.outcome == PathRewriting::Outcome::kNotText) {
    GLogger::GetSharedInstance()->LogWarning(
        "FileSystem",
        "GFileSystem::OSExpandPath(), called with invalid UTF8 Path. Attempting convserion with "
        "other encodings.");
    result = OSRewritePath(path.c_str(), PathEncoding::kMacOSRoman);
  }
  switch (result.outcome) {
    case PathRewriting::Outcome::kRewritten:
      path = result.text;
      return CoreErrorCodes::kSuccess;
    case PathRewriting::Outcome::kNotText:
      break;
    case PathRewriting::Outcome::kFailed:
      path.clear();
      GLogger::GetSharedInstance()->LogError(
          "FileSystem", "GFileSystem::OSExpandPath(), exception caught\n- %s", result.text.c_str());
      break;
  }
  return GFileSystem::kInvalidCharacterForFileSystemRepresentation;
}

}  // namespace

std::string GFileSystem::OSGetPathSeparator() {
  return "/";
}

bool GFileSystem::OSIsValidFullPath(std::string& path) {
  if (OSIsPartialPath(path)) return false;
  const std::string separator = OSGetPathSeparator();
  if (path != separator) path = GStringUtils::StripTrailingString(path, separator);
  return true;
}

bool GFileSystem::OSIsPartialPath(const std::string& path) {
  return !GStringUtils::BeginsWith(path, OSGetPathSeparator());
}

GFileSystemSpec GFileSystem::OSGetCWD() {
  GFileSystemSpec cwd;
  [&cwd] {
    uint32_t err = CoreErrorCodes::kSuccess;
    std::array<char, PATH_MAX> curPath = {};
    // NOLINTNEXTLINE(modernize-use-nullptr): the log shows the expression as it stands.
    CORE_CHECK_CONDITION(NULL == getcwd(&curPath[0], PATH_MAX), CoreErrorCodes::kError,
                         "FileSystem");
    cwd.SetFullPath(curPath.data());
    return err;
  }();
  return cwd;
}

uint32_t GFileSystem::OSExpandPath(std::string& path) {
  uint32_t err = CoreErrorCodes::kSuccess;
  if (path.empty()) return err;
  {
    GScopedManagedMemory scope;
    err = ExpandInScope(path);
  }
  CORE_CHECK_RESULT(err, "FileSystem");
  return err;
}
