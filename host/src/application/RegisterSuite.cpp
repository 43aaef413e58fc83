#include "Host.h"
#include "HostCall.h"
#include "SuiteTables.h"

namespace host {
namespace {

// The checks that every registration has in common. A hook comes too late once the entry point has
// returned.
bool MayRegister(HostCall& call, AEGP_PluginID id, bool hasHook) {
  if (call.misuse() != A_Err_NONE || !call.needsPluginId(id)) return false;
  if (!hasHook) call.misused(Finding::nullArgument, "the hook is null");
  if (!TheHost().isStarting()) {
    call.misused(Finding::lateHook, "the entry point has returned");
  }
  return call.misuse() == A_Err_NONE;
}

A_Err RegisterCommandHook(AEGP_PluginID id, AEGP_HookPriority priority, AEGP_Command command,
                          AEGP_CommandHook hook, AEGP_CommandRefcon refcon) {
  HostCall call(SuiteId::register5, "AEGP_RegisterCommandHook", int64_t{id}, int64_t{priority},
                int64_t{command});
  MayRegister(call, id, hook != nullptr);
  if (const A_Err error = call.error()) return error;
  TheHost().hooks.addCommandHook({{hook, refcon}, priority, command});
  TheHost().timeline.add(Actor::plugIn, "registers a command hook");
  return A_Err_NONE;
}

A_Err RegisterUpdateMenuHook(AEGP_PluginID id, AEGP_UpdateMenuHook hook,
                             AEGP_UpdateMenuRefcon refcon) {
  HostCall call(SuiteId::register5, "AEGP_RegisterUpdateMenuHook", int64_t{id});
  MayRegister(call, id, hook != nullptr);
  if (const A_Err error = call.error()) return error;
  TheHost().hooks.updateMenu.push_back({hook, refcon});
  TheHost().timeline.add(Actor::plugIn, "registers an update-menu hook");
  return A_Err_NONE;
}

A_Err RegisterDeathHook(AEGP_PluginID id, AEGP_DeathHook hook, AEGP_DeathRefcon refcon) {
  HostCall call(SuiteId::register5, "AEGP_RegisterDeathHook", int64_t{id});
  MayRegister(call, id, hook != nullptr);
  if (const A_Err error = call.error()) return error;
  TheHost().hooks.death.push_back({hook, refcon});
  TheHost().timeline.add(Actor::plugIn, "registers a death hook");
  return A_Err_NONE;
}

A_Err RegisterIdleHook(AEGP_PluginID id, AEGP_IdleHook hook, AEGP_IdleRefcon refcon) {
  HostCall call(SuiteId::register5, "AEGP_RegisterIdleHook", int64_t{id});
  MayRegister(call, id, hook != nullptr);
  if (const A_Err error = call.error()) return error;
  TheHost().hooks.idle.push_back({hook, refcon});
  TheHost().timeline.add(Actor::plugIn, "registers an idle hook");
  return A_Err_NONE;
}

}  // namespace

const AEGP_RegisterSuite5 kRegisterSuite5{
    .AEGP_RegisterCommandHook = RegisterCommandHook,
    .AEGP_RegisterUpdateMenuHook = RegisterUpdateMenuHook,
    .AEGP_RegisterDeathHook = RegisterDeathHook,
    NOT_SUPPLIED(register5, AEGP_RegisterVersionHook),
    NOT_SUPPLIED(register5, AEGP_RegisterAboutStringHook),
    NOT_SUPPLIED(register5, AEGP_RegisterAboutHook),
    NOT_SUPPLIED(register5, AEGP_RegisterArtisan),
    NOT_SUPPLIED(register5, AEGP_RegisterIO),
    .AEGP_RegisterIdleHook = RegisterIdleHook,
    NOT_SUPPLIED(register5, AEGP_RegisterTracker),
    NOT_SUPPLIED(register5, AEGP_RegisterInteractiveArtisan),
    NOT_SUPPLIED(register5, AEGP_RegisterPresetLocalizationString),
};

}  // namespace host
