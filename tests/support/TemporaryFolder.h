#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>

/// Makes a folder and removes it with the object.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "typelark-XXXXXX").string();
    if (!mkdtemp(pattern.data())) throw std::runtime_error("no temporary folder");
    mPath = pattern;
  }
  ~TemporaryFolder() { std::filesystem::remove_all(mPath); }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& path() const { return mPath; }

  /// Writes a file, makes its folders, and returns its path.
  std::filesystem::path Write(const std::string& name, std::string_view content) const {
    const auto file = mPath / name;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << content;
    return file;
  }

 private:
  std::filesystem::path mPath;
};
