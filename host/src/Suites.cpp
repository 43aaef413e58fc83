#include "Suites.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string_view>

#include "Host.h"

namespace host {
namespace {

A_Err Fault(FailingFunction function) {
  const A_Err result = TheHost().faults.take(function);
  if (result != A_Err_NONE) {
    TheHost().timeline.add(Actor::host, fmt::format("{} fails with {}", function.name, result));
  }
  return result;
}

A_Err Unsupported() {
  return PF_Err_BAD_CALLBACK_PARAM;
}

// Register suite

A_Err RegisterCommandHook(AEGP_PluginID, AEGP_HookPriority priority, AEGP_Command command,
                          AEGP_CommandHook hook, AEGP_CommandRefcon refcon) {
  if (const A_Err fault = Fault("AEGP_RegisterCommandHook")) return fault;
  TheHost().hooks.addCommandHook({{hook, refcon}, priority, command});
  TheHost().timeline.add(Actor::plugIn, "registers a command hook");
  return A_Err_NONE;
}

A_Err RegisterUpdateMenuHook(AEGP_PluginID, AEGP_UpdateMenuHook hook,
                             AEGP_UpdateMenuRefcon refcon) {
  if (const A_Err fault = Fault("AEGP_RegisterUpdateMenuHook")) return fault;
  TheHost().hooks.updateMenu.push_back({hook, refcon});
  TheHost().timeline.add(Actor::plugIn, "registers an update-menu hook");
  return A_Err_NONE;
}

A_Err RegisterDeathHook(AEGP_PluginID, AEGP_DeathHook hook, AEGP_DeathRefcon refcon) {
  if (const A_Err fault = Fault("AEGP_RegisterDeathHook")) return fault;
  TheHost().hooks.death.push_back({hook, refcon});
  TheHost().timeline.add(Actor::plugIn, "registers a death hook");
  return A_Err_NONE;
}

A_Err RegisterIdleHook(AEGP_PluginID, AEGP_IdleHook hook, AEGP_IdleRefcon refcon) {
  if (const A_Err fault = Fault("AEGP_RegisterIdleHook")) return fault;
  TheHost().hooks.idle.push_back({hook, refcon});
  TheHost().timeline.add(Actor::plugIn, "registers an idle hook");
  return A_Err_NONE;
}

const AEGP_RegisterSuite5 kRegisterSuite{RegisterCommandHook, RegisterUpdateMenuHook,
                                         RegisterDeathHook, RegisterIdleHook};

// Command suite

A_Err GetUniqueCommand(AEGP_Command* command) {
  if (const A_Err fault = Fault("AEGP_GetUniqueCommand")) return fault;
  *command = TheHost().menus.makeCommand();
  return A_Err_NONE;
}

A_Err InsertMenuCommand(AEGP_Command command, const A_char* name, AEGP_MenuID menu, A_long place) {
  if (const A_Err fault = Fault("AEGP_InsertMenuCommand")) return fault;
  const A_Err result = TheHost().menus.insert(command, name, menu, place);
  TheHost().timeline.add(Actor::plugIn, fmt::format("inserts \"{}\" into menu {}, place {}{}", name,
                                                    menu, place, result ? ": refused" : ""));
  return result;
}

A_Err EnableCommand(AEGP_Command command) {
  if (const A_Err fault = Fault("AEGP_EnableCommand")) return fault;
  return TheHost().menus.enable(command);
}

A_Err DoCommand(AEGP_Command command) {
  if (const A_Err fault = Fault("AEGP_DoCommand")) return fault;
  TheHost().timeline.add(Actor::plugIn, fmt::format("asks for command {}", command));
  TheHost().runCommand(command);
  return A_Err_NONE;
}

const AEGP_CommandSuite1 kCommandSuite{GetUniqueCommand, InsertMenuCommand, EnableCommand,
                                       DoCommand};

// Utility suites

A_Err ReportInfo(AEGP_PluginID, const A_char* text) {
  if (const A_Err fault = Fault("AEGP_ReportInfo")) return fault;
  TheHost().timeline.add(Actor::plugIn, fmt::format("reports to the user: {}", text));
  TheHost().timeline.record.reports.emplace_back(text);
  return A_Err_NONE;
}

A_Err UpdateFontList() {
  if (const A_Err fault = Fault("AEGP_UpdateFontList")) return fault;
  TheHost().updateFontList();
  return A_Err_NONE;
}

const AEGP_UtilitySuite3 kUtilitySuite3{ReportInfo};
const AEGP_UtilitySuite6 kUtilitySuite6{UpdateFontList};

// Project suite

A_Err GetNumProjects(A_long* count) {
  if (const A_Err fault = Fault("AEGP_GetNumProjects")) return fault;
  *count = 1;
  return A_Err_NONE;
}

A_Err GetProjectByIndex(A_long index, AEGP_ProjectH* project) {
  if (const A_Err fault = Fault("AEGP_GetProjectByIndex")) return fault;
  if (index != 0) return A_Err_GENERIC;
  *project = TheHost().project().handle();
  return A_Err_NONE;
}

// Not supplied: nothing says how much the caller's buffer holds.
A_Err GetProjectName(AEGP_ProjectH, A_char*) {
  return PF_Err_BAD_CALLBACK_PARAM;
}

A_Err GetProjectPath(AEGP_ProjectH project, AEGP_MemHandle* path) {
  if (const A_Err fault = Fault("AEGP_GetProjectPath")) return fault;
  if (project != TheHost().project().handle()) return A_Err_GENERIC;
  *path = TheHost().memory.make(TheHost().project().reportedPath);
  return A_Err_NONE;
}

A_Err ProjectIsDirty(AEGP_ProjectH project, A_Boolean* dirty) {
  if (const A_Err fault = Fault("AEGP_ProjectIsDirty")) return fault;
  if (project != TheHost().project().handle()) return A_Err_GENERIC;
  *dirty = TheHost().project().dirty ? 1 : 0;
  return A_Err_NONE;
}

A_Err NewProject(AEGP_ProjectH* project) {
  if (const A_Err fault = Fault("AEGP_NewProject")) return fault;
  TheHost().timeline.add(Actor::plugIn, "closes the project for a new one");
  TheHost().newProject();
  *project = TheHost().project().handle();
  return A_Err_NONE;
}

A_Err OpenProjectFromPath(const A_UTF16Char* path, AEGP_ProjectH* project) {
  if (const A_Err fault = Fault("AEGP_OpenProjectFromPath")) return fault;
  std::u16string text;
  for (; *path; ++path) text += static_cast<char16_t>(*path);
  std::string opened;
  try {
    opened = std::filesystem::path(text).string();
  } catch (const std::exception&) {
    TheHost().timeline.add(Actor::plugIn, "asks for a project whose path isn't UTF-16");
    return A_Err_GENERIC;
  }
  TheHost().timeline.add(Actor::plugIn, fmt::format("asks for the project {}", opened));
  if (const A_Err result = TheHost().openProject(opened)) return result;
  *project = TheHost().project().handle();
  return A_Err_NONE;
}

const AEGP_ProjSuite6 kProjSuite{
    GetNumProjects, GetProjectByIndex,   GetProjectName, GetProjectPath, Unsupported,
    Unsupported,    Unsupported,         Unsupported,    ProjectIsDirty, Unsupported,
    NewProject,     OpenProjectFromPath, Unsupported,    Unsupported};

// Memory suite. An injected failure of a function that gives something back comes after the deed,
// so that what is left at the end is the plug-in's doing and not the fault's.

A_Err FreeMemHandle(AEGP_MemHandle handle) {
  const A_Err result = TheHost().memory.free(handle);
  const A_Err fault = Fault("AEGP_FreeMemHandle");
  return fault ? fault : result;
}

A_Err LockMemHandle(AEGP_MemHandle handle, void** start) {
  if (const A_Err fault = Fault("AEGP_LockMemHandle")) {
    TheHost().memory.noteFailedLock(handle);
    return fault;
  }
  return TheHost().memory.lock(handle, start);
}

A_Err UnlockMemHandle(AEGP_MemHandle handle) {
  const A_Err result = TheHost().memory.unlock(handle);
  const A_Err fault = Fault("AEGP_UnlockMemHandle");
  return fault ? fault : result;
}

const AEGP_MemorySuite1 kMemorySuite{Unsupported, FreeMemHandle, LockMemHandle, UnlockMemHandle,
                                     Unsupported, Unsupported,   Unsupported,   Unsupported};

// Application and persistent data suites

A_Err RefreshAllWindows() {
  if (const A_Err fault = Fault("PF_RefreshAllWindows")) return fault;
  TheHost().timeline.add(Actor::plugIn, "has all windows drawn anew");
  return A_Err_NONE;
}

const PFAdvAppSuite2 kAdvAppSuite{RefreshAllWindows};

A_Err GetApplicationBlob(AEGP_PersistentBlobH* blob) {
  if (const A_Err fault = Fault("AEGP_GetApplicationBlob")) return fault;
  *blob = TheHost().preferencesHandle();
  return A_Err_NONE;
}

A_Err SetString(AEGP_PersistentBlobH blob, const A_char* section, const A_char* key,
                const A_char* text) {
  if (const A_Err fault = Fault("AEGP_SetString")) return fault;
  if (blob != TheHost().preferencesHandle()) return A_Err_GENERIC;
  TheHost().preferences[section][key] = text;
  TheHost().timeline.add(Actor::plugIn,
                         fmt::format("sets preference {} / {} to \"{}\"", section, key, text));
  return A_Err_NONE;
}

A_Err GetString(AEGP_PersistentBlobH blob, const A_char* section, const A_char* key,
                const A_char* fallback, A_u_long size, char* buffer, A_u_long* actualSize) {
  if (const A_Err fault = Fault("AEGP_GetString")) return fault;
  if (blob != TheHost().preferencesHandle() || size == 0) return A_Err_GENERIC;
  const std::string* preference = TheHost().findPreference(section, key);
  const std::string text = preference ? *preference : fallback ? fallback : "";
  if (text.size() >= size) return A_Err_GENERIC;
  std::memcpy(buffer, text.c_str(), text.size() + 1);
  if (actualSize) *actualSize = static_cast<A_u_long>(text.size() + 1);
  return A_Err_NONE;
}

const AEGP_PersistentDataSuite3 kPersistentDataSuite3{GetApplicationBlob, SetString};
const AEGP_PersistentDataSuite4 kPersistentDataSuite4{GetString};

struct Suite {
  const char* name;
  int32 version;
  const void* table;
};

const std::array kSuites{
    Suite{kAEGPRegisterSuite, kAEGPRegisterSuiteVersion5, &kRegisterSuite},
    Suite{kAEGPCommandSuite, kAEGPCommandSuiteVersion1, &kCommandSuite},
    Suite{kAEGPUtilitySuite, kAEGPUtilitySuiteVersion3, &kUtilitySuite3},
    Suite{kAEGPUtilitySuite, kAEGPUtilitySuiteVersion6, &kUtilitySuite6},
    Suite{kAEGPProjSuite, kAEGPProjSuiteVersion6, &kProjSuite},
    Suite{kAEGPMemorySuite, kAEGPMemorySuiteVersion1, &kMemorySuite},
    Suite{kPFAdvAppSuite, kPFAdvAppSuiteVersion2, &kAdvAppSuite},
    Suite{kAEGPPersistentDataSuite, kAEGPPersistentDataSuiteVersion3, &kPersistentDataSuite3},
    Suite{kAEGPPersistentDataSuite, kAEGPPersistentDataSuiteVersion4, &kPersistentDataSuite4},
};

// `kSuites.size()` when there is none.
size_t IndexOf(const char* name, int32 version) {
  const auto* const found = std::find_if(kSuites.begin(), kSuites.end(), [&](const Suite& suite) {
    return suite.version == version && std::strcmp(suite.name, name) == 0;
  });
  return static_cast<size_t>(found - kSuites.begin());
}

// Basic suite

SPErr AcquireSuite(const char* name, int32 version, const void** suite) {
  return TheHost().suites.acquire(name, version, suite);
}

SPErr ReleaseSuite(const char* name, int32 version) {
  return TheHost().suites.release(name, version);
}

SPBoolean IsEqual(const char* token1, const char* token2) {
  return std::strcmp(token1, token2) == 0 ? 1 : 0;
}

SPErr AllocateBlock(size_t size, void** block) {
  *block = std::malloc(size);
  return *block ? 0 : A_Err_GENERIC;
}

SPErr FreeBlock(void* block) {
  std::free(block);
  return 0;
}

SPErr ReallocateBlock(void* block, size_t newSize, void** newBlock) {
  void* moved = std::realloc(block, newSize);
  if (!moved) return A_Err_GENERIC;
  *newBlock = moved;
  return 0;
}

SPBasicSuite basicSuite{AcquireSuite, ReleaseSuite,    IsEqual,    AllocateBlock,
                        FreeBlock,    ReallocateBlock, Unsupported};

}  // namespace

SPBasicSuite* BasicSuite() {
  return &basicSuite;
}

bool HasSuite(const std::string& name, int32 version) {
  return IndexOf(name.c_str(), version) < kSuites.size();
}

SPErr SuiteLedger::acquire(const char* name, int32 version, const void** suite) {
  static_assert(kSuiteCount == kSuites.size());
  const size_t index = IndexOf(name, version);
  if (index == kSuiteCount || TheHost().faults.refuses(name, version)) {
    TheHost().noteRefusal(fmt::format("refuses {} {}", name, version));
    *suite = nullptr;
    return PF_Err_BAD_CALLBACK_PARAM;
  }
  ++mOutstanding[index];
  ++mAcquisitions;
  *suite = kSuites[index].table;
  return 0;
}

SPErr SuiteLedger::release(const char* name, int32 version) {
  const size_t index = IndexOf(name, version);
  if (index == kSuiteCount || mOutstanding[index] == 0) {
    mViolations.push_back(fmt::format("{} {} was released but not acquired", name, version));
    return A_Err_GENERIC;
  }
  --mOutstanding[index];
  return 0;
}

std::vector<std::string> SuiteLedger::findings() const {
  std::vector<std::string> findings = mViolations;
  for (size_t i = 0; i < kSuiteCount; ++i) {
    if (mOutstanding[i] == 0) continue;
    const Suite& suite = kSuites[i];
    findings.push_back(fmt::format("{} {} was acquired and not released, {} time(s)", suite.name,
                                   suite.version, mOutstanding[i]));
  }
  return findings;
}

}  // namespace host
