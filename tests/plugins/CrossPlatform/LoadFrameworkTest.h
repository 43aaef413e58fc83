#pragma once

#include <gtest/gtest.h>

#include <array>

#include "DllFrameworkUtils.h"
#include "TemporaryFolder.h"

class LoadFrameworkTest : public testing::Test {
 protected:
  /// Writes a framework with these entries in its list. Its module has the framework's name.
  std::filesystem::path Framework(const std::string& entries) {
    const std::string name = "F" + std::to_string(++mCount);
    const auto file =
        folder.Write(name + ".framework/Info.plist",
                     R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><dict>)" +
                         entries + "</dict></plist>");
    std::filesystem::copy_file(TAMBERLINK_FRAMEWORK "/Tamberlink", file.parent_path() / name);
    return file.parent_path();
  }

  static std::string Version(const std::string& text) {
    return "<key>CFBundleShortVersionString</key><string>" + text + "</string>";
  }

  void* Load(const std::filesystem::path& path) {
    version = {"-------"};
    return LoadDllOrFramework(path.c_str(), version.data(), 8);
  }

  TemporaryFolder folder;
  std::array<char, 8> version{};

 private:
  int mCount = 0;
};
