#include "AETypelark.h"

#include <array>

#include "AEIdleEventHandler.h"
#include "AETypelark_Strings.h"
#include "AE_APISuiteHandlerManager.h"
#include "DebugUtils.h"
#include "GlobalState.h"
#include "NSAppOverride.h"
#include "TBKLoader.h"
#include "TraceFile.h"

namespace {

constexpr char kClientId[] = "com.veldrane.AutoActivationPlugin.AE160";
constexpr char kClientVersion[] = "16";
constexpr size_t kReplySize = 32767;

bool isHostSupported(A_long major_version, A_long minor_version) {
  return major_version >= 114 || (major_version == 113 && minor_version >= 5);
}

void traceVersions(A_long major_version, A_long minor_version) {
  if (!TraceIsOn()) return;
  OutputIndentedAndFormattedString(0, "Typelark %s in After Effects %d.%d", TYPELARK_VERSION,
                                   major_version, minor_version);
  if (isHostSupported(major_version, minor_version)) return;
  OutputIndentedAndFormattedString(0, "The host is too old: the plug-in needs 113.5 or later");
}

void reportStartFailure(AE_APISuiteHandlerManager* manager, AEGP_PluginID plugin_id) {
  try {
    manager->suite_handler_ptr()->UtilitySuite3()->AEGP_ReportInfo(
        plugin_id, GetStringPtr(kStringStartFailed));
  } catch (MissingSuite) {
    // The host can't show the report. It still gets the error.
  }
}

A_Err traced(const char* function, A_Err error) {
  if (TraceIsOn()) OutputIndentedAndFormattedString(0, "%s returned %d", function, error);
  return error;
}

// Returns whether to start an activation, once the user is done.
bool invokeCommandDialog() {
  TamberlinkDocumentId id{};
  uint64_t length = id.size();
  CallTamberlink(&TBKLoader::pfGetIDForDocument, global_state.lastProjectPath, id.data(), &length);
  // The framework may have left no terminator.
  id.back() = '\0';
  std::array<char, kReplySize> reply{};
  bool start = false;
  CallTamberlink(&TBKLoader::pfInvokeCommandDialog, id.data(), reply.data(), &start);
  return start;
}

}  // namespace

A_Err EntryPointFunc(SPBasicSuite* pica_basicP, A_long major_version, A_long minor_version,
                     AEGP_PluginID plugin_id, AEGP_GlobalRefcon* /*global_refconP*/) {
  global_state.hostMajorVersion = major_version;
  global_state.hostMinorVersion = minor_version;
  StartTraceFile();
  traceVersions(major_version, minor_version);
  if (!isHostSupported(major_version, minor_version)) return A_Err_NONE;
  global_state.picaBasicSuite = pica_basicP;
  global_state.pluginId = plugin_id;
  try {
    AE_APISuiteHandlerManager manager(pica_basicP);
    return bootstrap(&manager, &global_state);
  } catch (MissingSuite missingSuite) {
    return missingSuite;
  }
}

A_Err bootstrap(AE_APISuiteHandlerManager* manager, GlobalState* state) {
  if (!manager || !state) return A_Err_NONE;
  if (!TBKLoader::GetSharedInstance()) return A_Err_NONE;
  A_Err error = registerForAEEventNotifications(manager, state->pluginId);
  if (error == A_Err_NONE) error = addMenuItems(manager, &state->menuCommand, state->pluginId);
  if (error == A_Err_NONE) {
    installAndStartDialogSuppression();
    initializeTamberlink();
  } else {
    reportStartFailure(manager, state->pluginId);
  }
  return error;
}

A_Err registerForAEEventNotifications(AE_APISuiteHandlerManager* manager, AEGP_PluginID plugin_id) {
  if (!manager) return A_Err_NONE;
  AEGP_SuiteHandler* suites = manager->suite_handler_ptr();
  A_Err error = traced("AEGP_RegisterIdleHook", suites->RegisterSuite5()->AEGP_RegisterIdleHook(
                                                    plugin_id, IdleHook, nullptr));
  if (error == A_Err_NONE) {
    error = traced("AEGP_RegisterDeathHook",
                   suites->RegisterSuite5()->AEGP_RegisterDeathHook(plugin_id, DeathHook, nullptr));
  }
  if (error == A_Err_NONE) {
    error = traced(
        "AEGP_RegisterUpdateMenuHook",
        suites->RegisterSuite5()->AEGP_RegisterUpdateMenuHook(plugin_id, UpdateMenuHook, nullptr));
  }
  return error;
}

A_Err addMenuItems(AE_APISuiteHandlerManager* manager, AEGP_Command* command,
                   AEGP_PluginID plugin_id) {
  if (!manager) return A_Err_NONE;
  AEGP_SuiteHandler* suites = manager->suite_handler_ptr();
  A_Err error =
      traced("AEGP_GetUniqueCommand", suites->CommandSuite1()->AEGP_GetUniqueCommand(command));
  if (error == A_Err_NONE) {
    error = traced("AEGP_InsertMenuCommand", suites->CommandSuite1()->AEGP_InsertMenuCommand(
                                                 *command, GetStringPtr(kStringMenuItem),
                                                 AEGP_Menu_WINDOW, AEGP_MENU_INSERT_SORTED));
  }
  if (error == A_Err_NONE) {
    error = traced("AEGP_RegisterCommandHook",
                   suites->RegisterSuite5()->AEGP_RegisterCommandHook(
                       plugin_id, AEGP_HP_BeforeAE, AEGP_Command_ALL, MenuCommandHook, nullptr));
  }
  return error;
}

void installAndStartDialogSuppression() {
  SwizzleNSAppBeginModal();
  traceModalOverride();
  global_state.setShouldSuppressModalWindows(true);
}

void initializeTamberlink() {
  if (global_state.tamberlinkInitialized || !TBKLoader::GetSharedInstance()) return;
  CallTamberlink(&TBKLoader::pfInitializeTamberlinkInterface, kClientId, kClientVersion);
  global_state.tamberlinkInitialized = true;
}

A_Err IdleHook(AEGP_GlobalRefcon /*global_refcon*/, AEGP_IdleRefcon /*refcon*/,
               A_long* /*max_sleep*/) {
  A_Err error = A_Err_NONE;
  try {
    global_state.updateGlobalState();
    TBKCallTracker tracker;
    error = runIdleEvents(&global_state, &tracker);
  } catch (MissingSuite) {
    // Returning the code would show an error at every tick.
  }
  traceModalOverride();
  // The next tick compares with these, even if this one did nothing with them.
  global_state.lastProjectDirty = global_state.currentProjectDirty;
  global_state.lastProjectPath = global_state.currentProjectPath;
  return error;
}

A_Err MenuCommandHook(AEGP_GlobalRefcon /*global_refcon*/, AEGP_CommandRefcon /*refcon*/,
                      AEGP_Command command, AEGP_HookPriority /*hook_priority*/,
                      A_Boolean /*already_handled*/, A_Boolean* handled) {
  if (command != global_state.menuCommand) return A_Err_NONE;
  if (TraceIsOn()) OutputIndentedAndFormattedString(0, "Handling the menu command");
  if (invokeCommandDialog()) {
    try {
      global_state.startFontActivationProcess();
    } catch (MissingSuite) {
      // No activation starts, but the project is open, so stop waiting for its dialog.
    }
    global_state.projectOpened();
  }
  *handled = 1;
  return A_Err_NONE;
}

A_Err UpdateMenuHook(AEGP_GlobalRefcon /*global_refcon*/, AEGP_UpdateMenuRefcon /*refcon*/,
                     AEGP_WindowType /*active_window*/) {
  try {
    AE_APISuiteHandlerManager manager(global_state.picaBasicSuite);
    return manager.suite_handler_ptr()->CommandSuite1()->AEGP_EnableCommand(
        global_state.menuCommand);
  } catch (MissingSuite) {
    return A_Err_NONE;
  }
}

A_Err DeathHook(AEGP_GlobalRefcon /*global_refcon*/, AEGP_DeathRefcon /*refcon*/) {
  if (TraceIsOn()) OutputIndentedAndFormattedString(0, "The host quits");
  if (!TBKLoader::GetSharedInstance()) return A_Err_NONE;
  TamberlinkDocumentId id{};
  CallTamberlink(&TBKLoader::pfHandleCloseDocument, global_state.lastProjectPath, id.data());
  CallTamberlink(&TBKLoader::pfTerminateTamberlinkInterface);
  return A_Err_NONE;
}
