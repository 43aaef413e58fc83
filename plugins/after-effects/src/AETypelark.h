#pragma once

#include "AE_GeneralPlug.h"

class AE_APISuiteHandlerManager;
class GlobalState;

// The plug-in as the host sees it. Main thread only. Returns host codes, 0 for success. Ignores
// refcons.
//
// A suite that the host lacks makes the code below throw `MissingSuite`. The entry point returns
// its value. The hooks return 0, because the host would show an error at every tick. Other
// exceptions pass into the host.

/// Starts the plug-in, once, when the host loads it. The only export. Stores the host's version.
/// Registers nothing and returns 0 on hosts older than 113.5, and if there is no framework.
/// Otherwise returns the error that stopped the start.
extern "C" [[gnu::visibility("default")]] A_Err EntryPointFunc(SPBasicSuite* pica_basicP,
                                                               A_long major_version,
                                                               A_long minor_version,
                                                               AEGP_PluginID plugin_id,
                                                               AEGP_GlobalRefcon* global_refconP);

/// Runs one tick. Returns what its work returned, 0 if a suite is missing.
A_Err IdleHook(AEGP_GlobalRefcon global_refcon, AEGP_IdleRefcon refcon, A_long* max_sleep);
/// Runs the plug-in's own command and sets `handled`. Leaves other commands alone. Returns 0.
A_Err MenuCommandHook(AEGP_GlobalRefcon global_refcon, AEGP_CommandRefcon refcon,
                      AEGP_Command command, AEGP_HookPriority hook_priority,
                      A_Boolean already_handled, A_Boolean* handled);
/// Enables the menu item. Returns the host's code, 0 if a suite is missing.
A_Err UpdateMenuHook(AEGP_GlobalRefcon global_refcon, AEGP_UpdateMenuRefcon refcon,
                     AEGP_WindowType active_window);
/// Reports the close of the document and ends the connection to the framework. For the host's
/// shutdown. Returns 0.
A_Err DeathHook(AEGP_GlobalRefcon global_refcon, AEGP_DeathRefcon refcon);

/// Registers the hooks, adds the menu item, installs the modal override and initializes the
/// framework. Stops at the host's first error, reports it to the user and returns it. Does nothing
/// for a null argument, or without a framework, and returns 0.
A_Err bootstrap(AE_APISuiteHandlerManager* manager, GlobalState* state);
/// Registers the idle, death and update-menu hooks. Stops at the first error and returns it. Does
/// nothing for a null `manager` and returns 0.
A_Err registerForAEEventNotifications(AE_APISuiteHandlerManager* manager, AEGP_PluginID plugin_id);
/// Adds the menu item, writes its command's id to `command` and registers the command hook. Stops
/// at the first error and returns it. Does nothing for a null `manager` and returns 0.
A_Err addMenuItems(AE_APISuiteHandlerManager* manager, AEGP_Command* command,
                   AEGP_PluginID plugin_id);
/// Installs the modal override and lets it act.
void installAndStartDialogSuppression();
/// Introduces the plug-in to the framework, once.
void initializeTamberlink();
