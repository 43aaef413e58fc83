#include "Suites.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

#include "SuiteFunction.h"

namespace host {
namespace {

struct Suite {
  std::string_view name;
  int32 version;
  const void* table;
};

const std::array kSuites{
    Suite{kAEGPRegisterSuite, kAEGPRegisterSuiteVersion5, &kRegisterSuite5},
    Suite{kAEGPCommandSuite, kAEGPCommandSuiteVersion1, &kCommandSuite1},
    Suite{kAEGPUtilitySuite, kAEGPUtilitySuiteVersion3, &kUtilitySuite3},
    Suite{kAEGPUtilitySuite, kAEGPUtilitySuiteVersion6, &kUtilitySuite6},
    Suite{kAEGPProjSuite, kAEGPProjSuiteVersion6, &kProjSuite6},
    Suite{kAEGPMemorySuite, kAEGPMemorySuiteVersion1, &kMemorySuite1},
    Suite{kPFAdvAppSuite, kPFAdvAppSuiteVersion2, &kAdvAppSuite2},
    Suite{kAEGPPersistentDataSuite, kAEGPPersistentDataSuiteVersion3, &kPersistentDataSuite3},
    Suite{kAEGPPersistentDataSuite, kAEGPPersistentDataSuiteVersion4, &kPersistentDataSuite4},
};

// Returns null if there is none.
const Suite* Find(std::string_view name, int32 version) {
  for (const Suite& suite : kSuites) {
    if (suite.version == version && suite.name == name) return &suite;
  }
  return nullptr;
}

// Says what the plug-in asks for that isn't there. Returns the error of the call.
A_Err ReportMissing(Host& host, std::string_view name, int32 version) {
  std::string versions;
  for (const Suite& suite : kSuites) {
    if (suite.name != name) continue;
    versions +=
        fmt::format("{} {}", versions.empty() ? ": this host has version" : " and", suite.version);
  }
  host.noteOnce(Actor::plugIn,
                fmt::format("asks for {}{}", NameOfSuite(name, version),
                            versions.empty() ? ", which this host doesn't supply" : versions));
  return PF_Err_BAD_CALLBACK_PARAM;
}

// Returns the error of a suite that the session has the host refuse, or 0.
A_Err Refuse(Host& host, const std::string& suite) {
  const A_Err error = host.faults.take(suite);
  if (error != A_Err_NONE) {
    host.countFailure("AcquireSuite");
    host.noteOnce(Actor::host, "refuses " + suite);
  }
  return error;
}

SPErr AcquireSuite(Host& host, A_Err fault, const char* name, int32 version, const void** suite) {
  const Suite* const found = Find(name, version);
  A_Err error = fault;
  if (error == A_Err_NONE) {
    error = found ? Refuse(host, NameOfSuite(name, version)) : ReportMissing(host, name, version);
  }
  if (found && error == A_Err_NONE) {
    *suite = found->table;
    host.ledger.give(Holding::suite, *suite, host.origin());
    return error;
  }
  *suite = nullptr;
  if (found) host.countFailure(NameOfSuite(name, version));
  // What the code that the host's makers give away throws for any suite that it lacks.
  host.countAnswer(PF_Err_BAD_CALLBACK_PARAM);
  return error;
}

SPErr ReleaseSuite(Host& host, const char* name, int32 version) {
  const Suite* const suite = Find(name, version);
  const void* const table = suite ? suite->table : nullptr;
  if (host.ledger.takeBack(Holding::suite, table)) return A_Err_NONE;
  const Origin* const released = table ? host.ledger.takenBack(Holding::suite, table) : nullptr;
  return host.misused(
      Finding::suiteReleasedTooOften,
      fmt::format(
          "{} isn't acquired{}", NameOfSuite(name, version),
          released ? fmt::format("; the one from {} was released before", released->text()) : ""));
}

SPBoolean IsEqual(Host& /*host*/, const char* token1, const char* token2) {
  return std::strcmp(token1, token2) == 0 ? 1 : 0;
}

SPErr AllocateBlock(Host& host, size_t size, void** block) {
  *block = host.memory.makeBlock(size);
  if (!*block) return A_Err_GENERIC;
  host.ledger.give(Holding::block, *block, host.origin());
  return A_Err_NONE;
}

void FreeBlock(Host& host, void* block) {
  host.ledger.takeBack(Holding::block, block);
  host.memory.free(block);
}

SPErr ReallocateBlock(Host& host, void* block, size_t newSize, void** newBlock) {
  void* moved = nullptr;
  if (const SPErr error = AllocateBlock(host, newSize, &moved)) return error;
  std::memcpy(moved, block, std::min(newSize, host.memory.at(block).bytes.size()));
  FreeBlock(host, block);
  *newBlock = moved;
  return A_Err_NONE;
}

// A hook comes too late once the entry point has returned, or has a hook called.
template <typename Added>
A_Err Register(Host& host, const char* kind, std::vector<Added>& hooks, const Added& added) {
  if (!host.isIn(kEntryPoint)) {
    return host.misused(Finding::lateHook, "only the entry point can register a hook");
  }
  if (std::find(hooks.begin(), hooks.end(), added) != hooks.end()) {
    host.misused(Finding::registeredTwice, "the hook is registered already");
  }
  host.timeline.add(Actor::plugIn, fmt::format("registers {}", kind));
  hooks.push_back(added);
  return A_Err_NONE;
}

A_Err RegisterCommandHook(Host& host, AEGP_PluginID, AEGP_HookPriority priority,
                          AEGP_Command command, AEGP_CommandHook hook, AEGP_CommandRefcon refcon) {
  std::vector<CommandHook>& hooks = host.hooks.command;
  const A_Err error = Register(host, "a command hook", hooks, {{hook, refcon}, priority, command});
  std::stable_sort(hooks.begin(), hooks.end(), [](const auto& one, const auto& other) {
    return one.priority < other.priority;
  });
  return error;
}

A_Err RegisterUpdateMenuHook(Host& host, AEGP_PluginID, AEGP_UpdateMenuHook hook,
                             AEGP_UpdateMenuRefcon refcon) {
  return Register(host, "an update-menu hook", host.hooks.updateMenu, {hook, refcon});
}

A_Err RegisterDeathHook(Host& host, AEGP_PluginID, AEGP_DeathHook hook, AEGP_DeathRefcon refcon) {
  return Register(host, "a death hook", host.hooks.death, {hook, refcon});
}

A_Err RegisterIdleHook(Host& host, AEGP_PluginID, AEGP_IdleHook hook, AEGP_IdleRefcon refcon) {
  return Register(host, "an idle hook", host.hooks.idle, {hook, refcon});
}

SPBasicSuite basicSuite{
    SUPPLIED(basicSuite, AcquireSuite, AcquireSuite, "name", "version", "suite"),
    GIVES_BACK(basicSuite, ReleaseSuite, ReleaseSuite, "name", "version"),
    SUPPLIED(basicSuite, IsEqual, IsEqual, "token1", "token2"),
    SUPPLIED(basicSuite, AllocateBlock, AllocateBlock, "size", "block"),
    GIVES_BACK(basicSuite, FreeBlock, FreeBlock, "block"),
    SUPPLIED(basicSuite, ReallocateBlock, ReallocateBlock, "block", "newSize", "newBlock"),
    NOT_SUPPLIED(basicSuite, Undefined),
};

}  // namespace

const AEGP_RegisterSuite5 kRegisterSuite5{
    SUPPLIED(kRegisterSuite5, AEGP_RegisterCommandHook, RegisterCommandHook, "aegp_plugin_id",
             "hook_priority", "command", "hook", "refcon?"),
    SUPPLIED(kRegisterSuite5, AEGP_RegisterUpdateMenuHook, RegisterUpdateMenuHook, "aegp_plugin_id",
             "hook", "refcon?"),
    SUPPLIED(kRegisterSuite5, AEGP_RegisterDeathHook, RegisterDeathHook, "aegp_plugin_id", "hook",
             "refcon?"),
    NOT_SUPPLIED(kRegisterSuite5, AEGP_RegisterVersionHook, AEGP_RegisterAboutStringHook,
                 AEGP_RegisterAboutHook, AEGP_RegisterArtisan, AEGP_RegisterIO),
    SUPPLIED(kRegisterSuite5, AEGP_RegisterIdleHook, RegisterIdleHook, "aegp_plugin_id", "hook",
             "refcon?"),
    NOT_SUPPLIED(kRegisterSuite5, AEGP_RegisterTracker, AEGP_RegisterInteractiveArtisan,
                 AEGP_RegisterPresetLocalizationString),
};

SPBasicSuite* BasicSuite() {
  return &basicSuite;
}

std::string NameOfSuite(std::string_view name, int32 version) {
  return fmt::format("{} {}", name, version);
}

std::string NameOfSuite(const void* table) {
  for (const Suite& suite : kSuites) {
    if (suite.table == table) return NameOfSuite(suite.name, suite.version);
  }
  return "the basic suite";
}

bool HasSuite(std::string_view nameAndVersion) {
  return std::any_of(kSuites.begin(), kSuites.end(), [&](const Suite& suite) {
    return NameOfSuite(suite.table) == nameAndVersion;
  });
}

}  // namespace host
