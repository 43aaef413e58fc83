// The part of the macOS half that needs only POSIX, so every platform builds it. The part that
// needs Cocoa is in GFileSystem_Mac.mm, whose place GFileSystem_Linux.cpp takes on Linux.
#include <unistd.h>

#include <array>
#include <climits>

#include "CppCoreMacros.h"
#include "GFileSystem.h"
#include "GFileSystemPlatform.h"
#include "GFileSystemSpec.h"
#include "GLogger.h"
#include "GScopedManagedMemory.h"
#include "GStringUtils.h"

namespace {

uint32_t ReadWorkingDirectory(GFileSystemSpec& cwd) {
  uint32_t err = CoreErrorCodes::kSuccess;
  std::array<char, PATH_MAX> curPath = {};
  // NOLINTNEXTLINE(modernize-use-nullptr): the log shows the expression as written.
  CORE_CHECK_CONDITION(NULL == getcwd(&curPath[0], PATH_MAX), CoreErrorCodes::kError, "FileSystem");
  cwd.SetFullPath(curPath.data());
  return err;
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
  ReadWorkingDirectory(cwd);
  return cwd;
}

uint32_t GFileSystem::OSExpandPath(std::string& path) {
  uint32_t err = CoreErrorCodes::kSuccess;
  if (path.empty()) return err;
  {
    const GScopedManagedMemory scope;
    PathExpansion expansion = OSExpandTilde(path.c_str(), PathEncoding::kUTF8);
    if (expansion.outcome == PathExpansion::kNotText) {
      GLogger::GetSharedInstance()->LogWarning(
          "FileSystem",
          "GFileSystem::OSExpandPath(), called with invalid UTF8 Path. Attempting convserion "
          "with other encodings.");
      expansion = OSExpandTilde(path.c_str(), PathEncoding::kMacOSRoman);
    }
    if (expansion.outcome == PathExpansion::kExpanded) {
      path = expansion.text;
    } else {
      err = kInvalidCharacterForFileSystemRepresentation;
    }
    if (expansion.outcome == PathExpansion::kFailed) {
      path.clear();
      GLogger::GetSharedInstance()->LogError("FileSystem",
                                             "GFileSystem::OSExpandPath(), exception caught\n- %s",
                                             expansion.text.c_str());
    }
  }
  CORE_CHECK_RESULT(err, "FileSystem");
  return err;
}
