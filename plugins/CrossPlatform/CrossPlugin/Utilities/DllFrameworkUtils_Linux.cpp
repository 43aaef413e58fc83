#include <dlfcn.h>
#include <plist/plist.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <type_traits>

#include "DebugUtils.h"
#include "DllFrameworkUtils.h"
#include "PlatformStringUtils.h"

// A framework is a directory that holds a module, which `CFBundleExecutable` in its `Info.plist`
// names. Without that entry, or without the list, the module has the framework's name without its
// extension. A regular file is a module by itself, and has no version.

namespace {

namespace fs = std::filesystem;

using PropertyList = std::unique_ptr<void, decltype(&plist_free)>;

// Takes XML and binary lists. Null without a readable one.
PropertyList ReadInfoDictionary(const fs::path& framework) {
  std::ifstream stream(framework / "Info.plist", std::ios::binary);
  // Reading a directory fails, which the stream takes for the end.
  std::ostringstream text;
  text << stream.rdbuf();
  const std::string bytes = text.str();
  plist_t dictionary = nullptr;
  plist_from_memory(bytes.data(), static_cast<uint32_t>(bytes.size()), &dictionary);
  return {dictionary, plist_free};
}

// Null if there is no such entry, or if it isn't text.
const __CFString* GetInfoValue(const PropertyList& dictionary, const char* key) {
  if (!dictionary || plist_get_node_type(dictionary.get()) != PLIST_DICT) return nullptr;
  const plist_t value = plist_dict_get_item(dictionary.get(), key);
  if (plist_get_node_type(value) != PLIST_STRING) return nullptr;
  return static_cast<const __CFString*>(value);
}

fs::path ExecutableName(const fs::path& framework, const PropertyList& dictionary) {
  const fs::path declared = GetStdString(GetInfoValue(dictionary, "CFBundleExecutable"));
  // Only the file name, so that the module is inside the framework.
  if (declared.has_filename()) return declared.filename();
  // "/a/F.framework/" ends in an empty name.
  return (framework.has_filename() ? framework : framework.parent_path()).stem();
}

void* OpenModule(const fs::path& module) {
  std::error_code error;
  // The dynamic loader would look for a bare name on the library path.
  const fs::path absolute = fs::absolute(module, error);
  return error ? nullptr : dlopen(absolute.c_str(), RTLD_NOW | RTLD_LOCAL);
}

}  // namespace

void* LoadDllOrFramework(const char* path, char* versionOut, unsigned int versionOutSize) {
  const fs::path location(path);
  std::error_code error;
  const bool isModule = fs::is_regular_file(location, error);
  const PropertyList dictionary =
      isModule ? PropertyList(nullptr, plist_free) : ReadInfoDictionary(location);
  void* bundle = OpenModule(isModule ? location : location / ExecutableName(location, dictionary));
  TraceFrameworkOpened(bundle, path);
  if (!bundle && TraceIsOn()) {
    const char* reason = dlerror();
    OutputIndentedAndFormattedString(0, "It can't be loaded: %s",
                                     reason ? reason : "there is no working directory");
  }
  const __CFString* version = GetInfoValue(dictionary, "CFBundleShortVersionString");
  if (bundle && version) {
    std::snprintf(versionOut, versionOutSize, "%s", GetStdString(version).c_str());
  }
  return bundle;
}

void* GetFunctionPtr(void* bundle, const char* name) {
  if (!bundle) return nullptr;
  void* function = dlsym(bundle, name);
  TraceExportLookedUp(bundle, name, function);
  return function;
}
