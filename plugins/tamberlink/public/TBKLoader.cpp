#include "TBKLoader.h"

#include <sys/stat.h>

#include <array>

#include "DebugUtils.h"
#include "DllFrameworkUtils.h"
#include "GetPathToRunningProcess.h"

// The exports in table order. `VerifyThatAllMembersAre` passes over the last two.
#define TAMBERLINK_VERIFIED_EXPORTS(EXPORT) \
  EXPORT(ActivateChosenFonts)               \
  EXPORT(CreateMenusFromJSONBuffer)         \
  EXPORT(GetAPIVersion)                     \
  EXPORT(GetIDForDocument)                  \
  EXPORT(GetMenus)                          \
  EXPORT(GetSettings)                       \
  EXPORT(GetSocketPort)                     \
  EXPORT(HandleCloseDocument)               \
  EXPORT(HandleCreateNewDocument)           \
  EXPORT(HandleMenuSelection)               \
  EXPORT(HandleOpenExistingDocument)        \
  EXPORT(HandleSaveDocument)                \
  EXPORT(IdleEvent)                         \
  EXPORT(InitializeTamberlinkInterface)     \
  EXPORT(InvokeCommandDialog)               \
  EXPORT(InvokeResolveDialog)               \
  EXPORT(InvokeRestrictedFontsDialog)       \
  EXPORT(PluginIsEnabled)                   \
  EXPORT(ProcessPanelMessages)              \
  EXPORT(RegisterPlugPlug)                  \
  EXPORT(SetPathForDocument)                \
  EXPORT(TerminateTamberlinkInterface)      \
  EXPORT(UpdateDocumentFontUsage)           \
  EXPORT(SetRebuildWorkgroupsMenuCallback)

#define TAMBERLINK_EXPORTS(EXPORT)    \
  TAMBERLINK_VERIFIED_EXPORTS(EXPORT) \
  EXPORT(ShowNotLoggedInMessageBox)   \
  EXPORT(ShouldShowLogin)

TBKLoader* TBKLoader::sSharedInstance = nullptr;

namespace {

constexpr char kFrameworkName[] = "Tamberlink.framework";

// False for a directory, so also for a framework.
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
  return sSharedInstance;
}

void TBKLoader::ResetFunctionPointers(TBKLoader* loader, const void* bundle) {
  if (bundle) loader->missingFunctionCount = 0;
#define LOOK_UP(name) LookUp(loader->pf##name, bundle, #name, loader->missingFunctionCount);
  TAMBERLINK_EXPORTS(LOOK_UP)
#undef LOOK_UP
}

bool TBKLoader::VerifyThatAllMembersAre(bool nonNull) {
  bool allAre = true;
#define VERIFY(name)                                                               \
  if (!pf##name && nonNull) {                                                      \
    OutputIndentedAndFormattedString(0, "ERROR:  this->pf" #name " is NULL.");     \
    allAre = false;                                                                \
  } else if (pf##name && !nonNull) {                                               \
    OutputIndentedAndFormattedString(0, "ERROR:  this->pf" #name " is not NULL."); \
    allAre = false;                                                                \
  }
  TAMBERLINK_VERIFIED_EXPORTS(VERIFY)
#undef VERIFY
  return allAre;
}

void AskWhetherPluginIsEnabled(bool showMessage, bool* enabled) {
  const TBKLoader* loader = TBKLoader::GetSharedInstance();
  if (loader && loader->pfPluginIsEnabled) {
    loader->pfPluginIsEnabled(showMessage, enabled);
  } else {
    *enabled = false;
  }
}
