#include "GFileSystemSpec.h"

#include "CppCoreMacros.h"
#include "GFileSystem.h"
#include "GStringUtils.h"
#include "GSystem.h"

namespace {

// Returns the position of the separator before the last component, or `npos` if there is none.
// Ignores a separator at the end of the path, unless it is the whole path.
size_t FindLastSeparator(const std::string& path) {
  const std::string separator = GFileSystem::OSGetPathSeparator();
  const size_t cut = path.rfind(separator);
  if (cut == std::string::npos || cut == 0 || cut != path.size() - separator.size()) return cut;
  return path.rfind(separator, cut - 1);
}

std::string StripSeparators(const std::string& component) {
  const std::string separator = GFileSystem::OSGetPathSeparator();
  return GStringUtils::StripPrecedingString(GStringUtils::StripTrailingString(component, separator),
                                            separator);
}

// Moves the cut: a drive's root keeps its separator, and a network's root is removed as a whole.
// `GSystem` numbers Windows, so paths know its roots, though this tree has no build for it yet.
size_t KeepWindowsRoot(const std::string& path, size_t cut) {
  const std::string separator = GFileSystem::OSGetPathSeparator();
  if (cut == 2 && path[1] == ':') cut += 1;
  if (GStringUtils::BeginsWith(path, separator + separator) &&
      GStringUtils::EndsWith(path, separator) && GStringUtils::Split(path, separator).size() == 4) {
    cut = 0;
  }
  return cut;
}

}  // namespace

GFileSystemSpec::GFileSystemSpec(const char* path) {
  const std::string quote = "\"";
  std::string full =
      GStringUtils::StripPrecedingString(GStringUtils::StripTrailingString(path, quote), quote);
  GFileSystem::OSExpandPath(full);
  if (GFileSystem::OSIsPartialPath(full)) {
    full = GFileSystem::OSGetCWD().AppendPathComponent(full).GetFullPath();
  }
  SetFullPath(full);
}

uint32_t GFileSystemSpec::SetFullPath(const std::string& path) {
  uint32_t err = CoreErrorCodes::kSuccess;
  std::string strCopy = path;
  CORE_CHECK_RESULT(GFileSystem::OSExpandPath(strCopy), "FileSystem");
  CORE_CHECK_CONDITION(!(strCopy.empty() || GFileSystem::OSIsValidFullPath(strCopy)),
                       CoreErrorCodes::kInvalidParam, "FileSystem");
  mFullPath = strCopy;
  return err;
}

GFileSystemSpec& GFileSystemSpec::AppendPathComponent(const std::string& component) {
  const std::string added = StripSeparators(component);
  if (!added.empty()) {
    const std::string separator = GFileSystem::OSGetPathSeparator();
    SetFullPath(GStringUtils::StripTrailingString(mFullPath, separator) + separator + added);
  }
  return *this;
}

GFileSystemSpec& GFileSystemSpec::RemoveLastPathComponent() {
  const std::string separator = GFileSystem::OSGetPathSeparator();
  size_t cut = FindLastSeparator(mFullPath);
  if (!GSystem::IsWindows() && cut == 0 && mFullPath.size() > separator.size()) {
    SetFullPath(separator);
  } else if (cut == std::string::npos) {
    SetFullPath("");
  } else {
    if (GSystem::IsWindows()) cut = KeepWindowsRoot(mFullPath, cut);
    SetFullPath(mFullPath.substr(0, cut));
  }
  return *this;
}

std::string GFileSystemSpec::GetLastPathComponent() const {
  return GetLastPathComponent(mFullPath);
}

std::string GFileSystemSpec::GetLastPathComponent(const std::string& path) {
  const size_t cut = FindLastSeparator(path);
  return StripSeparators(cut == std::string::npos ? path : path.substr(cut));
}
