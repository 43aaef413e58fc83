#include "FakeHost.h"

#include <algorithm>
#include <cstring>

#include "AE_AdvEffectSuites.h"

FakeHost& fake_host = *new FakeHost;

namespace {

struct _AEGP_Project* const kProject = nullptr;
AEGP_ProjectH ProjectHandle() {
  return const_cast<AEGP_ProjectH>(&kProject);
}
AEGP_MemHandle PathHandle() {
  return reinterpret_cast<AEGP_MemHandle>(&fake_host.path);
}
AEGP_PersistentBlobH BlobHandle() {
  return reinterpret_cast<AEGP_PersistentBlobH>(&fake_host.preferences);
}

template <class Work>
A_Err Do(const char* function, const std::string& arguments, Work work) {
  const A_Err error = fake_host.Call(function, arguments);
  if (error == A_Err_NONE) work();
  return error;
}

// The functions without a caller stay null.
const AEGP_RegisterSuite5 kRegisterSuite = [] {
  AEGP_RegisterSuite5 suite{};
  suite.AEGP_RegisterCommandHook = [](AEGP_PluginID id, AEGP_HookPriority priority,
                                      AEGP_Command command, AEGP_CommandHook hook,
                                      AEGP_CommandRefcon) {
    return Do("AEGP_RegisterCommandHook",
              std::to_string(id) + "," + std::to_string(priority) + "," + std::to_string(command),
              [&] { fake_host.commandHook = hook; });
  };
  suite.AEGP_RegisterUpdateMenuHook = [](AEGP_PluginID id, AEGP_UpdateMenuHook,
                                         AEGP_UpdateMenuRefcon) {
    return fake_host.Call("AEGP_RegisterUpdateMenuHook", std::to_string(id));
  };
  suite.AEGP_RegisterDeathHook = [](AEGP_PluginID id, AEGP_DeathHook, AEGP_DeathRefcon) {
    return fake_host.Call("AEGP_RegisterDeathHook", std::to_string(id));
  };
  suite.AEGP_RegisterIdleHook = [](AEGP_PluginID id, AEGP_IdleHook hook, AEGP_IdleRefcon) {
    return Do("AEGP_RegisterIdleHook", std::to_string(id), [&] { fake_host.idleHook = hook; });
  };
  return suite;
}();

const AEGP_CommandSuite1 kCommandSuite = [] {
  AEGP_CommandSuite1 suite{};
  suite.AEGP_GetUniqueCommand = [](AEGP_Command* command) {
    return Do("AEGP_GetUniqueCommand", "", [&] { *command = 900; });
  };
  suite.AEGP_InsertMenuCommand = [](AEGP_Command command, const A_char* name, AEGP_MenuID menu,
                                    A_long after) {
    return fake_host.Call("AEGP_InsertMenuCommand", std::to_string(command) + "," + name + "," +
                                                        std::to_string(menu) + "," +
                                                        std::to_string(after));
  };
  suite.AEGP_DoCommand = [](AEGP_Command command) {
    return fake_host.Call("AEGP_DoCommand", std::to_string(command));
  };
  return suite;
}();

const AEGP_UtilitySuite3 kUtilitySuite3 = [] {
  AEGP_UtilitySuite3 suite{};
  suite.AEGP_ReportInfo = [](AEGP_PluginID id, const A_char* text) {
    return fake_host.Call("AEGP_ReportInfo", std::to_string(id) + "," + text);
  };
  return suite;
}();

const AEGP_UtilitySuite6 kUtilitySuite6 = [] {
  AEGP_UtilitySuite6 suite{};
  suite.AEGP_UpdateFontList = [] { return fake_host.Call("AEGP_UpdateFontList"); };
  return suite;
}();

const PF_AdvAppSuite2 kAdvAppSuite = [] {
  PF_AdvAppSuite2 suite{};
  suite.PF_RefreshAllWindows = [] { return fake_host.Call("PF_RefreshAllWindows"); };
  return suite;
}();

const AEGP_ProjSuite6 kProjSuite = [] {
  AEGP_ProjSuite6 suite{};
  suite.AEGP_GetProjectByIndex = [](A_long index, AEGP_ProjectH* project) {
    return Do("AEGP_GetProjectByIndex", std::to_string(index),
              [&] { *project = fake_host.hasProject ? ProjectHandle() : nullptr; });
  };
  suite.AEGP_GetProjectPath = [](AEGP_ProjectH, AEGP_MemHandle* path) {
    return Do("AEGP_GetProjectPath", "", [&] { *path = PathHandle(); });
  };
  suite.AEGP_ProjectIsDirty = [](AEGP_ProjectH, A_Boolean* dirty) {
    return Do("AEGP_ProjectIsDirty", "", [&] { *dirty = fake_host.dirty ? 1 : 0; });
  };
  suite.AEGP_NewProject = [](AEGP_ProjectH*) { return fake_host.Call("AEGP_NewProject"); };
  suite.AEGP_OpenProjectFromPath = [](const A_UTF16Char* path, AEGP_ProjectH*) {
    return Do("AEGP_OpenProjectFromPath", "", [&] {
      fake_host.openedPath.clear();
      while (*path != 0) fake_host.openedPath += static_cast<char16_t>(*path++);
    });
  };
  return suite;
}();

const AEGP_MemorySuite1 kMemorySuite = [] {
  AEGP_MemorySuite1 suite{};
  suite.AEGP_FreeMemHandle = [](AEGP_MemHandle) { return fake_host.Call("AEGP_FreeMemHandle"); };
  suite.AEGP_LockMemHandle = [](AEGP_MemHandle, void** start) {
    return Do("AEGP_LockMemHandle", "", [&] { *start = fake_host.path.data(); });
  };
  suite.AEGP_UnlockMemHandle = [](AEGP_MemHandle) {
    return fake_host.Call("AEGP_UnlockMemHandle");
  };
  return suite;
}();

const AEGP_PersistentDataSuite3 kPersistentDataSuite3 = [] {
  AEGP_PersistentDataSuite3 suite{};
  suite.AEGP_GetApplicationBlob = [](AEGP_PersistentBlobH* blob) {
    return Do("AEGP_GetApplicationBlob", "", [&] { *blob = BlobHandle(); });
  };
  suite.AEGP_SetString = [](AEGP_PersistentBlobH, const A_char* section, const A_char* key,
                            const A_char* text) {
    return Do("AEGP_SetString", "",
              [&] { fake_host.preferences[std::string(section) + "/" + key] = text; });
  };
  return suite;
}();

const AEGP_PersistentDataSuite4 kPersistentDataSuite4 = [] {
  AEGP_PersistentDataSuite4 suite{};
  suite.AEGP_GetString = [](AEGP_PersistentBlobH, const A_char* section, const A_char* key,
                            const A_char* standard, A_u_long size, A_char* text, A_u_long*) {
    return Do("AEGP_GetString", "", [&] {
      const auto found = fake_host.preferences.find(std::string(section) + "/" + key);
      const std::string value = found == fake_host.preferences.end() ? standard : found->second;
      std::strncpy(text, value.c_str(), size);
    });
  };
  return suite;
}();

const std::map<std::pair<std::string, int>, const void*> kSuites = {
    {{"AEGP Register Suite", 6}, &kRegisterSuite},
    {{"AEGP Command Suite", 1}, &kCommandSuite},
    {{"AEGP Utility Suite", 7}, &kUtilitySuite3},
    {{"AEGP Utility Suite", 13}, &kUtilitySuite6},
    {{"AEGP Proj Suite", 9}, &kProjSuite},
    {{"AEGP Memory Suite", 1}, &kMemorySuite},
    {{"PF AE Adv App Suite", 2}, &kAdvAppSuite},
    {{"AEGP Persistent Data Suite", 3}, &kPersistentDataSuite3},
    {{"AEGP Persistent Data Suite", 4}, &kPersistentDataSuite4}};

std::string Describe(const char* name, int32 version) {
  return std::string(name) + " " + std::to_string(version);
}

SPErr AcquireSuite(const char* name, int32 version, const void** suite) {
  const auto found = kSuites.find({name, version});
  if (found == kSuites.end() || fake_host.refusedSuites.contains({name, version})) return 1;
  fake_host.calls.push_back("+" + Describe(name, version));
  *suite = found->second;
  return 0;
}

SPErr ReleaseSuite(const char* name, int32 version) {
  fake_host.calls.push_back("-" + Describe(name, version));
  return 0;
}

}  // namespace

A_Err FakeHost::Call(const std::string& function, const std::string& arguments) {
  calls.push_back(arguments.empty() ? function : function + "(" + arguments + ")");
  const auto failure = failures.find(function);
  return failure == failures.end() ? A_Err_NONE : failure->second;
}

std::vector<std::string> FakeHost::TakeCalls() {
  std::vector<std::string> taken;
  std::copy_if(calls.begin(), calls.end(), std::back_inserter(taken),
               [](const std::string& call) { return call[0] != '+' && call[0] != '-'; });
  calls.clear();
  return taken;
}

SPBasicSuite* FakeHost::basicSuite() {
  static SPBasicSuite suite = {AcquireSuite, ReleaseSuite, nullptr, nullptr,
                               nullptr,      nullptr,      nullptr};
  return &suite;
}
