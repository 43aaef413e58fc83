#include <utf8.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "GFileSystem.h"
#include "Require.h"

// Input: a path in any encoding.

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  setenv("HOME", "/home/of/fuzz", 1);
  const std::string path(reinterpret_cast<const char*>(data), size);
  const std::string read = path.substr(0, path.find('\0'));

  std::string expanded = path;
  Require(GFileSystem::OSExpandPath(expanded) == 0, "every path expands");
  Require(expanded.find('\0') == std::string::npos, "the path ends at its first NUL");
  Require(utf8::is_valid(expanded), "an expanded path is UTF-8");
  if (!read.starts_with("~") && utf8::is_valid(read)) {
    Require(expanded == read, "UTF-8 without a tilde stays as it is");
  }
  if (read == "~" || read.starts_with("~/")) {
    Require(expanded.starts_with("/home/of/fuzz"), "a tilde stands for the home directory");
  }

  std::string again = expanded;
  Require(GFileSystem::OSExpandPath(again) == 0 && again == expanded,
          "expanding a second time changes nothing");
  return 0;
}
