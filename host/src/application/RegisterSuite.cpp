#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "SuiteFunction.h"

namespace host {
namespace {

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

}  // namespace host
