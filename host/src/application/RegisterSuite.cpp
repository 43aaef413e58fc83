#include <algorithm>
#include <string>
#include <vector>

#include "SuiteFunction.h"

namespace host {
namespace {

// A hook comes too late once the entry point has returned. `registered` are those of its kind.
template <typename Hooks, typename Hook>
A_Err Register(const char* kind, const Hooks& registered, const Hook& hook) {
  if (!TheHost().isStarting()) {
    return SuiteCall::current().misused(Finding::lateHook, "the entry point has returned");
  }
  const auto isSame = [&](const auto& other) {
    return other.function == hook.function && other.refcon == hook.refcon;
  };
  if (std::any_of(registered.begin(), registered.end(), isSame)) {
    SuiteCall::current().misused(Finding::registeredTwice, "the hook is registered already");
  }
  TheHost().timeline.add(Actor::plugIn, std::string("registers ") + kind);
  return A_Err_NONE;
}

A_Err RegisterCommandHook(AEGP_PluginID, AEGP_HookPriority priority, AEGP_Command command,
                          AEGP_CommandHook hook, AEGP_CommandRefcon refcon) {
  const CommandHook added{{hook, refcon}, priority, command};
  std::vector<CommandHook> alike = TheHost().hooks.command;
  std::erase_if(alike, [&](const CommandHook& other) { return other.command != command; });
  const A_Err error = Register("a command hook", alike, added);
  if (error == A_Err_NONE) TheHost().hooks.addCommandHook(added);
  return error;
}

A_Err RegisterUpdateMenuHook(AEGP_PluginID, AEGP_UpdateMenuHook hook,
                             AEGP_UpdateMenuRefcon refcon) {
  auto& hooks = TheHost().hooks.updateMenu;
  const Hook<AEGP_UpdateMenuHook, AEGP_UpdateMenuRefcon> added{hook, refcon};
  const A_Err error = Register("an update-menu hook", hooks, added);
  if (error == A_Err_NONE) hooks.push_back(added);
  return error;
}

A_Err RegisterDeathHook(AEGP_PluginID, AEGP_DeathHook hook, AEGP_DeathRefcon refcon) {
  auto& hooks = TheHost().hooks.death;
  const Hook<AEGP_DeathHook, AEGP_DeathRefcon> added{hook, refcon};
  const A_Err error = Register("a death hook", hooks, added);
  if (error == A_Err_NONE) hooks.push_back(added);
  return error;
}

A_Err RegisterIdleHook(AEGP_PluginID, AEGP_IdleHook hook, AEGP_IdleRefcon refcon) {
  auto& hooks = TheHost().hooks.idle;
  const Hook<AEGP_IdleHook, AEGP_IdleRefcon> added{hook, refcon};
  const A_Err error = Register("an idle hook", hooks, added);
  if (error == A_Err_NONE) hooks.push_back(added);
  return error;
}

}  // namespace

const AEGP_RegisterSuite5 kRegisterSuite5{
    SUPPLIED(register5, AEGP_RegisterCommandHook, Body<RegisterCommandHook>, "aegp_plugin_id",
             "hook_priority", "command", "hook", "refcon?"),
    SUPPLIED(register5, AEGP_RegisterUpdateMenuHook, Body<RegisterUpdateMenuHook>, "aegp_plugin_id",
             "hook", "refcon?"),
    SUPPLIED(register5, AEGP_RegisterDeathHook, Body<RegisterDeathHook>, "aegp_plugin_id", "hook",
             "refcon?"),
    NOT_SUPPLIED(register5, AEGP_RegisterVersionHook),
    NOT_SUPPLIED(register5, AEGP_RegisterAboutStringHook),
    NOT_SUPPLIED(register5, AEGP_RegisterAboutHook),
    NOT_SUPPLIED(register5, AEGP_RegisterArtisan),
    NOT_SUPPLIED(register5, AEGP_RegisterIO),
    SUPPLIED(register5, AEGP_RegisterIdleHook, Body<RegisterIdleHook>, "aegp_plugin_id", "hook",
             "refcon?"),
    NOT_SUPPLIED(register5, AEGP_RegisterTracker),
    NOT_SUPPLIED(register5, AEGP_RegisterInteractiveArtisan),
    NOT_SUPPLIED(register5, AEGP_RegisterPresetLocalizationString),
};

}  // namespace host
