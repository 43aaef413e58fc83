#include "BenchHost.h"

#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

namespace bench_host {

int64_t suites_acquired = 0;

namespace {

// A file with a path of that many characters, gone with the process.
class ProjectFile {
 public:
  ProjectFile(char16_t character, size_t length)
      : mPath16(std::filesystem::temp_directory_path().u16string() + u"/") {
    mPath16.resize(length, character);
    mPath = std::filesystem::path(mPath16).string();
    std::ofstream stream(mPath);
  }
  ~ProjectFile() { std::filesystem::remove(mPath); }
  ProjectFile(const ProjectFile&) = delete;
  ProjectFile& operator=(const ProjectFile&) = delete;

  std::string mPath;
  std::u16string mPath16;
};

bool sJapanese = false;

ProjectFile& File() {
  static ProjectFile ascii(u'p', 100), japanese(u'字', 40);
  return sJapanese ? japanese : ascii;
}

_AEGP_Project* sProject = nullptr;
_Up_OpaqueMem* sPath = nullptr;

const AEGP_ProjSuite6 kProjSuite = {
    .AEGP_GetNumProjects = nullptr,
    .AEGP_GetProjectByIndex =
        [](A_long, AEGP_ProjectH* project) {
          *project = &sProject;
          return A_Err_NONE;
        },
    .AEGP_GetProjectName = nullptr,
    .AEGP_GetProjectPath =
        [](AEGP_ProjectH, AEGP_MemHandle* path) {
          *path = &sPath;
          return A_Err_NONE;
        },
    .AEGP_GetProjectRootFolder = nullptr,
    .AEGP_SaveProjectToPath = nullptr,
    .AEGP_GetProjectTimeDisplay = nullptr,
    .AEGP_SetProjectTimeDisplay = nullptr,
    .AEGP_ProjectIsDirty =
        [](AEGP_ProjectH, A_Boolean* dirty) {
          *dirty = 0;
          return A_Err_NONE;
        },
    .AEGP_SaveProjectAs = nullptr,
    .AEGP_NewProject = [](AEGP_ProjectH*) { return A_Err_NONE; },
    .AEGP_OpenProjectFromPath = [](const A_UTF16Char*, AEGP_ProjectH*) { return A_Err_NONE; },
    .AEGP_GetProjectBitDepth = nullptr,
    .AEGP_SetProjectBitDepth = nullptr};

const AEGP_MemorySuite1 kMemorySuite = {
    .AEGP_NewMemHandle = nullptr,
    .AEGP_FreeMemHandle = [](AEGP_MemHandle) { return A_Err_NONE; },
    .AEGP_LockMemHandle =
        [](AEGP_MemHandle, void** start) {
          *start = File().mPath16.data();
          return A_Err_NONE;
        },
    .AEGP_UnlockMemHandle = [](AEGP_MemHandle) { return A_Err_NONE; },
    .AEGP_GetMemHandleSize = nullptr,
    .AEGP_ResizeMemHandle = nullptr,
    .AEGP_SetMemReportingOn = nullptr,
    .AEGP_GetMemStats = nullptr};

const AEGP_UtilitySuite6 kUtilitySuite = {[] { return A_Err_NONE; }};
const PFAdvAppSuite2 kAdvAppSuite = {[] { return A_Err_NONE; }};

SPErr AcquireSuite(const char* name, int32, const void** suite) {
  ++suites_acquired;
  if (std::strcmp(name, kAEGPProjSuite) == 0) *suite = &kProjSuite;
  if (std::strcmp(name, kAEGPMemorySuite) == 0) *suite = &kMemorySuite;
  if (std::strcmp(name, kAEGPUtilitySuite) == 0) *suite = &kUtilitySuite;
  if (std::strcmp(name, kPFAdvAppSuite) == 0) *suite = &kAdvAppSuite;
  return 0;
}

}  // namespace

SPBasicSuite* BasicSuite() {
  static SPBasicSuite suite = {
      AcquireSuite, [](const char*, int32) { return SPErr{0}; }, nullptr, nullptr, nullptr, nullptr,
      nullptr};
  return &suite;
}

void UseJapanesePath(bool use) {
  sJapanese = use;
}

const char* ProjectPath() {
  return File().mPath.c_str();
}

}  // namespace bench_host
