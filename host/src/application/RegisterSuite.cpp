#include "Host.h"
#include "SuiteTables.h"

namespace host {
namespace {

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

}  // namespace

const AEGP_RegisterSuite5 kRegisterSuite5{
    .AEGP_RegisterCommandHook = RegisterCommandHook,
    .AEGP_RegisterUpdateMenuHook = RegisterUpdateMenuHook,
    .AEGP_RegisterDeathHook = RegisterDeathHook,
    NOT_SUPPLIED(AEGP_RegisterVersionHook),
    NOT_SUPPLIED(AEGP_RegisterAboutStringHook),
    NOT_SUPPLIED(AEGP_RegisterAboutHook),
    NOT_SUPPLIED(AEGP_RegisterArtisan),
    NOT_SUPPLIED(AEGP_RegisterIO),
    .AEGP_RegisterIdleHook = RegisterIdleHook,
    NOT_SUPPLIED(AEGP_RegisterTracker),
    NOT_SUPPLIED(AEGP_RegisterInteractiveArtisan),
    NOT_SUPPLIED(AEGP_RegisterPresetLocalizationString),
};

}  // namespace host
