#include "SuiteFunction.h"

namespace host {
namespace {

// A hook comes too late once the entry point has returned.
A_Err Register(const char* kind) {
  if (!TheHost().isStarting()) {
    return SuiteCall::current().misused(Finding::lateHook, "the entry point has returned");
  }
  TheHost().timeline.add(Actor::plugIn, std::string("registers ") + kind);
  return A_Err_NONE;
}

A_Err RegisterCommandHook(AEGP_PluginID, AEGP_HookPriority priority, AEGP_Command command,
                          AEGP_CommandHook hook, AEGP_CommandRefcon refcon) {
  const A_Err error = Register("a command hook");
  if (error == A_Err_NONE) TheHost().hooks.addCommandHook({{hook, refcon}, priority, command});
  return error;
}

A_Err RegisterUpdateMenuHook(AEGP_PluginID, AEGP_UpdateMenuHook hook,
                             AEGP_UpdateMenuRefcon refcon) {
  const A_Err error = Register("an update-menu hook");
  if (error == A_Err_NONE) TheHost().hooks.updateMenu.push_back({hook, refcon});
  return error;
}

A_Err RegisterDeathHook(AEGP_PluginID, AEGP_DeathHook hook, AEGP_DeathRefcon refcon) {
  const A_Err error = Register("a death hook");
  if (error == A_Err_NONE) TheHost().hooks.death.push_back({hook, refcon});
  return error;
}

A_Err RegisterIdleHook(AEGP_PluginID, AEGP_IdleHook hook, AEGP_IdleRefcon refcon) {
  const A_Err error = Register("an idle hook");
  if (error == A_Err_NONE) TheHost().hooks.idle.push_back({hook, refcon});
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
