#include "SessionFolder.h"

#include <fmt/format.h>

#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <system_error>

#include "TextFile.h"
#include "VirtualTime.h"

namespace host {
namespace {

namespace fs = std::filesystem;

// The age of a project at the beginning of the session, in seconds.
constexpr int64_t kAgeOfProjects = 3600;

fs::path MakeFolder() {
  std::string name = (fs::canonical(fs::temp_directory_path()) / "aegp-host-XXXXXX").string();
  if (!mkdtemp(name.data())) throw std::runtime_error("can't make a temporary folder");
  return name;
}

// A plug-in may have closed folders to writers.
void OpenFolders(const fs::path& folder) {
  std::error_code ignored;
  fs::permissions(folder, fs::perms::owner_all, ignored);
  using Entries = fs::recursive_directory_iterator;
  // Each is open before what is in it is looked at.
  for (Entries entry(folder, fs::directory_options::skip_permission_denied, ignored);
       entry != Entries(); entry.increment(ignored)) {
    if (entry->symlink_status(ignored).type() == fs::file_type::directory) {
      fs::permissions(*entry, fs::perms::owner_all, ignored);
    }
  }
}

}  // namespace

SessionFolder::SessionFolder(bool keep) : mKeep(keep), mPath(MakeFolder()) {}

SessionFolder::~SessionFolder() {
  if (mKeep) return;
  std::error_code error;
  fs::remove_all(mPath, error);
  if (!error) return;
  OpenFolders(mPath);
  fs::remove_all(mPath, error);
  if (error) fmt::print(stderr, "can't remove {}\n", mPath.string());
}

SessionFolder::SessionFolder(const FolderSetup& setup, bool keep) : SessionFolder(keep) {
  for (const auto& [path, fonts] : setup.projects) {
    WriteLines(mPath / path, fonts);
    SetModificationDate(mPath / path, kSessionStart - kAgeOfProjects);
  }
  WriteLines(mPath / "active-fonts", setup.activeFonts);
  for (const auto& [path, text] : setup.files) {
    std::string resolved = text;
    ReplaceAll(resolved, "${session}", mPath.string());
    WriteText(mPath / path, resolved);
  }
  for (const auto& [path, target] : setup.links) {
    fs::create_directories((mPath / path).parent_path());
    fs::create_directory_symlink(target, mPath / path);
  }
  for (const auto& [path, source] : setup.executables) {
    fs::create_directories((mPath / path).parent_path());
    // Copied, because the path of a running process is that of the file behind all links.
    fs::copy_file(source, mPath / path);
  }
}

}  // namespace host
