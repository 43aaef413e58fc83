#include "BenchHost.h"

#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

#include "AE_AdvEffectSuites.h"

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

// Functions that nobody calls stay null.
const AEGP_ProjSuite6 kProjSuite = [] {
  AEGP_ProjSuite6 suite{};
  suite.AEGP_GetProjectByIndex = [](A_long, AEGP_ProjectH* project) {
    *project = &sProject;
    return A_Err{A_Err_NONE};
  };
  suite.AEGP_GetProjectPath = [](AEGP_ProjectH, AEGP_MemHandle* path) {
    *path = &sPath;
    return A_Err{A_Err_NONE};
  };
  suite.AEGP_ProjectIsDirty = [](AEGP_ProjectH, A_Boolean* dirty) {
    *dirty = 0;
    return A_Err{A_Err_NONE};
  };
  suite.AEGP_NewProject = [](AEGP_ProjectH*) { return A_Err{A_Err_NONE}; };
  suite.AEGP_OpenProjectFromPath = [](const A_UTF16Char*, AEGP_ProjectH*) {
    return A_Err{A_Err_NONE};
  };
  return suite;
}();

const AEGP_MemorySuite1 kMemorySuite = [] {
  AEGP_MemorySuite1 suite{};
  suite.AEGP_FreeMemHandle = [](AEGP_MemHandle) { return A_Err{A_Err_NONE}; };
  suite.AEGP_LockMemHandle = [](AEGP_MemHandle, void** start) {
    *start = File().mPath16.data();
    return A_Err{A_Err_NONE};
  };
  suite.AEGP_UnlockMemHandle = [](AEGP_MemHandle) { return A_Err{A_Err_NONE}; };
  return suite;
}();

const AEGP_UtilitySuite6 kUtilitySuite = [] {
  AEGP_UtilitySuite6 suite{};
  suite.AEGP_UpdateFontList = [] { return A_Err{A_Err_NONE}; };
  return suite;
}();

const PF_AdvAppSuite2 kAdvAppSuite = [] {
  PF_AdvAppSuite2 suite{};
  suite.PF_RefreshAllWindows = [] { return A_Err{A_Err_NONE}; };
  return suite;
}();

SPErr AcquireSuite(const char* name, int32, const void** suite) {
  ++suites_acquired;
  if (std::strcmp(name, "AEGP Proj Suite") == 0) *suite = &kProjSuite;
  if (std::strcmp(name, "AEGP Memory Suite") == 0) *suite = &kMemorySuite;
  if (std::strcmp(name, "AEGP Utility Suite") == 0) *suite = &kUtilitySuite;
  if (std::strcmp(name, "PF AE Adv App Suite") == 0) *suite = &kAdvAppSuite;
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
