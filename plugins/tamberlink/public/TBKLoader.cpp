#include "TBKLoader.h"

#include <sys/stat.h>

#include <array>

#include "CppCoreMacros.h"
#include "DllFrameworkUtils.h"
#include "GetPathToRunningProcess.h"

TBKLoader* TBKLoader::sSharedInstance = nullptr;

namespace {

constexpr char kFrameworkName[] = "Tamberlink.framework";
// `VerifyThatAllMembersAre` passes over the last two.
constexpr int32_t kVerifiedExports = 24;

// Returns false for a directory, which a framework normally is.
bool FileExists(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

// The folder of the font manager's core process, as in "/Apps/Core/". A configured path without a
// separator comes back whole. Empty if there is neither a process nor a configured path.
std::string CoreProcessFolder() {
  std::string location;
  if (GetPathToRunningProcessExe("Oxbrim", location) == CoreErrorCodes::kSuccess) return location;
  GetConfiguredPath("Veldrane", "com.veldrane.Oxbrim-LaunchInfo.conf", "oxbrim.path", location);
  const size_t separator = location.find_last_of("/\\");
  if (separator != std::string::npos) location.erase(separator + 1);
  return location;
}

std::string WorkOutFrameworkPath() {
  std::string location = CoreProcessFolder();
  if (!location.empty() && !FileExists(location + kFrameworkName)) {
    const char separator = location.back();
    location += "PluginFiles";
    location += separator;
  }
  return location + kFrameworkName;
}

template <class Function>
void LookUp(Function*& member, const void* bundle, const char* name, int32_t& missing) {
  member = reinterpret_cast<Function*>(GetFunctionPtr(const_cast<void*>(bundle), name));
  if (!member) ++missing;
}

}  // namespace

TBKLoader::TBKLoader() {
  ResetFunctionPointers(this, nullptr);
  VerifyThatAllMembersAre(false);
}

TBKLoader::~TBKLoader() {
  sSharedInstance = nullptr;
}

TBKLoader* TBKLoader::FindAndLoadSharedInstance() {
  constexpr char kFunction[] = "GetSharedInstance";
  OutputIndentedAndFormattedString(+1, "Entering first call to %s()", kFunction);
  sSharedInstance = GetThisSharedInstance(WorkOutFrameworkPath());
  OutputIndentedAndFormattedString(-1, "Exiting first call to %s(); sSharedInstance=0x%08x",
                                   kFunction, LowBits(sSharedInstance));
  return sSharedInstance;
}

TBKLoader* TBKLoader::GetThisSharedInstance(const std::string& frameworkPath) {
  if (sSharedInstance) return sSharedInstance;
  std::array<char, 1024> version{};
  const void* bundle = LoadDllOrFramework(frameworkPath.c_str(), version.data(),
                                          static_cast<unsigned int>(version.size()));
  if (!bundle) {
    OutputIndentedAndFormattedString(0, "ERROR:  cannot find %s", kFrameworkName);
    return sSharedInstance;
  }
  OutputIndentedAndFormattedString(0, "Loaded %s", frameworkPath.c_str());
  sSharedInstance = new TBKLoader;
  sSharedInstance->frameworkPath = frameworkPath;
  sSharedInstance->frameworkVersion = version.data();
  ResetFunctionPointers(sSharedInstance, bundle);
  if (TraceIsOn()) {
    OutputIndentedAndFormattedString(0, "Its version is '%s', and it lacks %d exports",
                                     version.data(), sSharedInstance->missingFunctionCount);
  }
  return sSharedInstance;
}

void TBKLoader::ResetFunctionPointers(TBKLoader* loader, const void* bundle) {
  if (bundle) loader->missingFunctionCount = 0;
#define TBK_EXPORT(name, ...) TBK_UNCALLED_EXPORT(name)
#define TBK_UNCALLED_EXPORT(name) \
  LookUp(loader->pf##name, bundle, #name, loader->missingFunctionCount);
#include "TBKExports.def"
}

bool TBKLoader::VerifyThatAllMembersAre(bool nonNull) {
  bool allAre = true;
  int32_t position = 0;
#define TBK_EXPORT(name, ...) TBK_UNCALLED_EXPORT(name)
#define TBK_UNCALLED_EXPORT(name)                                                            \
  if (++position <= kVerifiedExports && (pf##name != nullptr) != nonNull) {                  \
    OutputIndentedAndFormattedString(0, nonNull ? "ERROR:  this->pf" #name " is NULL."       \
                                                : "ERROR:  this->pf" #name " is not NULL."); \
    allAre = false;                                                                          \
  }
#include "TBKExports.def"
  return allAre;
}

void TBKLoader::TraceCall(const void* member, const std::vector<std::string>& arguments,
                          uint32_t result) const {
  std::string name;
#define TBK_EXPORT(export, ...) TBK_UNCALLED_EXPORT(export)
#define TBK_UNCALLED_EXPORT(export) \
  if (member == &pf##export) name = #export;
#include "TBKExports.def"
  std::string call = name + "(";
  for (const std::string& argument : arguments) call += (call.back() == '(' ? "" : ", ") + argument;
  call += ") returned " + GetNameForErrorCode(result);
  const bool isPoll = name == "PluginIsEnabled" || name == "ShouldShowLogin";
  if (isPoll && !IsNews(name, call)) return;
  OutputIndentedAndFormattedString(0, "%s (0x%08x)", call.c_str(), result);
}

void AskWhetherPluginIsEnabled(bool showMessage, bool* enabled) {
  const TBKLoader* loader = TBKLoader::GetSharedInstance();
  if (!loader || !loader->pfPluginIsEnabled) *enabled = false;
  if (loader) CallTamberlink(&TBKLoader::pfPluginIsEnabled, showMessage, enabled);
}
