#include <utf8.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

#include "GFileSystemSpec.h"
#include "Require.h"

// Input: lines. The first is the path of a new value. Each further line changes the value: "a"
// appends the component that follows, "s" sets the path that follows, and anything else removes the
// last component.

namespace {

constexpr size_t kLongestPath = 4096;

void RequireInvariant(const GFileSystemSpec& value) {
  const std::string path = value.GetFullPath();
  Require(path.empty() || path == "/" || (path.starts_with("/") && !path.ends_with("/")),
          "a path is empty, the root, or absolute without a trailing separator");
  Require(utf8::is_valid(path) && path.find('\0') == std::string::npos,
          "a path is UTF-8 without a NUL");
  Require(value.GetLastPathComponent().find('/') == std::string::npos,
          "the last component is one component");
}

void Append(GFileSystemSpec& value, const std::string& component) {
  const std::string before = value.GetFullPath();
  value.AppendPathComponent(component);
  // Bytes that aren't UTF-8 change how the value reads its whole path.
  if (utf8::is_valid(component)) {
    Require(value.GetFullPath().starts_with(before), "appending keeps the path before it");
  }
}

void RemoveLast(GFileSystemSpec& value) {
  const std::string before = value.GetFullPath();
  const std::string last = value.GetLastPathComponent();
  value.RemoveLastPathComponent();
  const std::string after = value.GetFullPath();
  Require(before.starts_with(after) && (before.empty() || after.size() < before.size()),
          "removing a component shortens the path");
  if (!last.empty() && before.find("//") == std::string::npos) {
    GFileSystemSpec restored = value;
    Require(restored.AppendPathComponent(last).GetFullPath() == before,
            "the last component can be put back");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  setenv("HOME", "/home/of/fuzz", 1);
  std::istringstream lines(std::string(reinterpret_cast<const char*>(data), size));
  std::string line;
  std::getline(lines, line);
  GFileSystemSpec value(line.c_str());
  RequireInvariant(value);

  // A line with bytes that aren't UTF-8 can make the path several times longer, and so can each
  // line after it.
  while (value.GetFullPath().size() <= kLongestPath && std::getline(lines, line)) {
    const std::string before = value.GetFullPath();
    if (line.starts_with("a")) {
      Append(value, line.substr(1));
    } else if (line.starts_with("s")) {
      const uint32_t code = value.SetFullPath(line.substr(1));
      Require(code == 0 || value.GetFullPath() == before, "a refused path changes nothing");
    } else {
      RemoveLast(value);
    }
    RequireInvariant(value);
    GFileSystemSpec::GetLastPathComponent(line);
  }
  return 0;
}
