#pragma once

#include "AE_GeneralPlug.h"

class AE_APISuiteHandlerManager;
class GlobalState;

// The plug-in as the host sees it. Everything runs on the host's main thread; codes are the host's,
// 0 for success. No hook reads its refcons.
//
// A suite that the host lacks ends in an `int` thrown below the hooks. The entry point returns it
// as its error; the hooks stay quiet, since the host would show an error at every tick. Other
// exceptions pass into the host.

/// The only export. Called once, when the host loads the plug-in. Success without any effect on
/// hosts older than 113.5 and where the framework can't be had. Returns the error that stopped the
/// start.
extern "C" [[gnu::visibility("default")]] A_Err EntryPointFunc(SPBasicSuite* pica_basicP,
                                                               A_long major_version,
                                                               A_long minor_version,
                                                               AEGP_PluginID plugin_id,
                                                               AEGP_GlobalRefcon* global_refconP);

/// One tick of the plug-in. Returns what the tick's work returned, 0 when a suite is missing.
A_Err IdleHook(AEGP_GlobalRefcon global_refcon, AEGP_IdleRefcon refcon, A_long* max_sleep);
/// Sees every command and handles the plug-in's own. Always 0.
A_Err MenuCommandHook(AEGP_GlobalRefcon global_refcon, AEGP_CommandRefcon refcon,
                      AEGP_Command command, AEGP_HookPriority hook_priority,
                      A_Boolean already_handled, A_Boolean* handled);
/// Enables the menu item. Returns the host's answer, 0 when a suite is missing.
A_Err UpdateMenuHook(AEGP_GlobalRefcon global_refcon, AEGP_UpdateMenuRefcon refcon,
                     AEGP_WindowType active_window);
/// The host shuts down. Always 0.
A_Err DeathHook(AEGP_GlobalRefcon global_refcon, AEGP_DeathRefcon refcon);

/// Everything that the start does once the host is found fit, in its order. The first error that
/// the host returns stops it, is reported to the user and returned. A null argument gives 0.
A_Err bootstrap(AE_APISuiteHandlerManager* manager, GlobalState* state);
/// Registers the idle, death and update-menu hooks up to the first error, and returns that. A null
/// `manager` gives 0.
A_Err registerForAEEventNotifications(AE_APISuiteHandlerManager* manager, AEGP_PluginID plugin_id);
/// Adds the menu item and registers its command hook, up to the first error, and returns that.
/// Writes the new command's id to `command`. A null `manager` gives 0.
A_Err addMenuItems(AE_APISuiteHandlerManager* manager, AEGP_Command* command,
                   AEGP_PluginID plugin_id);
/// To be called once: a second exchange would undo the first.
void installAndStartDialogSuppression();
/// Does its work once, and only with the framework.
void initializeTamberlink();
