#include "SessionFolder.h"

#include <fmt/format.h>

#include <cstdlib>
#include <stdexcept>

#include "TextFile.h"
#include "VirtualTime.h"

namespace host {
namespace {

namespace fs = std::filesystem;

constexpr char kFramework[] = "Tamberlink.framework";
// The age of a project at the beginning of the session, in seconds.
constexpr int64_t kAgeOfProjects = 3600;

fs::path MakeFolder() {
  std::string name = (fs::canonical(fs::temp_directory_path()) / "aegp-host-XXXXXX").string();
  if (!mkdtemp(name.data())) throw std::runtime_error("can't make a temporary folder");
  return name;
}

}  // namespace

SessionFolder::SessionFolder(const SessionFolderSetup& setup, const fs::path& fontManager)
    : mPath(MakeFolder()) {
  try {
    fill(setup, fontManager);
  } catch (...) {
    fs::remove_all(mPath);
    throw;
  }
}

SessionFolder::~SessionFolder() {
  mProcesses.clear();
  std::error_code ignored;
  fs::remove_all(mPath, ignored);
}

void SessionFolder::fill(const SessionFolderSetup& setup, const fs::path& fontManager) {
  for (const auto& [path, fonts] : setup.projects) {
    WriteLines(mPath / path, fonts);
    SetModificationDate(mPath / path, kSessionStart - kAgeOfProjects);
  }
  std::vector<std::string> vault;
  for (const auto& [font, policy] : setup.vault)
    vault.push_back(fmt::format("{}\t{}", font, policy));
  WriteLines(mPath / "vault", vault);
  WriteLines(mPath / "active-fonts", setup.activeFonts);
  for (const auto& [path, text] : setup.files) {
    std::string resolved = text;
    ReplaceAll(resolved, "${session}", mPath.string());
    WriteText(mPath / path, resolved);
  }
  if (setup.hasFramework) placeFramework(setup, fontManager);
  for (const std::string& process : setup.processes) {
    const fs::path executable = mPath / process;
    fs::create_directories(executable.parent_path());
    // Copied, because the path of a running process is that of the file behind all links.
    fs::copy_file(fontManager / executable.filename(), executable);
    mProcesses.emplace_back(executable, mPath);
  }
}

void SessionFolder::placeFramework(const SessionFolderSetup& setup, const fs::path& fontManager) {
  const fs::path variant = setup.missingExport.empty() ? "." : "without-" + setup.missingExport;
  const fs::path bundle = fontManager / variant / kFramework;
  if (fontManager.empty() || !fs::is_directory(bundle)) {
    throw std::runtime_error(
        fmt::format("{}: framework: there is no {}; --font-manager names the folder that holds it",
                    setup.frameworkPlace, (variant / kFramework).lexically_normal().string()));
  }
  const fs::path place = mPath / setup.frameworkFolder;
  fs::create_directories(place);
  fs::create_directory_symlink(bundle, place / kFramework);
}

}  // namespace host
