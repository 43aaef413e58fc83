#pragma once

#include <cstdint>

#include "SPBasic.h"

// The host's interface for general plug-ins, as far as this tree uses it: types, hooks and suites
// under the host's own names. The number in a suite struct's name is the suite's number; the
// version that is passed to `SPBasicSuite::AcquireSuite` stands in the constant above it.
//
// Every function returns an `A_Err` and is called on the main thread. Handles belong to the host
// unless a comment says otherwise. Nobody here calls the entries without a signature.

using A_char = char;
using A_Boolean = unsigned char;
using A_short = int16_t;
using A_long = int32_t;
using A_u_long = uint32_t;
using A_UTF16Char = unsigned short;
using A_Err = A_long;  ///< 0 for success

inline constexpr A_Err A_Err_NONE = 0;
inline constexpr A_Err A_Err_GENERIC = 1;
inline constexpr A_Err PF_Err_BAD_CALLBACK_PARAM = 516;

using AEGP_PluginID = A_long;
using AEGP_Command = A_long;
using AEGP_MenuID = A_long;
using AEGP_HookPriority = A_long;
using AEGP_WindowType = A_char;

struct _AEGP_Project;
struct _Up_OpaqueMem;
struct _AEGP_PersistentBlob;
using AEGP_ProjectH = _AEGP_Project**;
using AEGP_MemHandle = _Up_OpaqueMem**;
using AEGP_PersistentBlobH = _AEGP_PersistentBlob**;

struct _AEGP_GlobalRefcon;
struct _AEGP_IdleRefcon;
struct _AEGP_CommandRefcon;
struct _AEGP_UpdateMenuRefcon;
struct _AEGP_DeathRefcon;
using AEGP_GlobalRefcon = _AEGP_GlobalRefcon*;
using AEGP_IdleRefcon = _AEGP_IdleRefcon*;
using AEGP_CommandRefcon = _AEGP_CommandRefcon*;
using AEGP_UpdateMenuRefcon = _AEGP_UpdateMenuRefcon*;
using AEGP_DeathRefcon = _AEGP_DeathRefcon*;

inline constexpr AEGP_MenuID AEGP_Menu_WINDOW = 7;
inline constexpr A_long AEGP_MENU_INSERT_SORTED = -2;
inline constexpr A_long AEGP_MENU_INSERT_AT_TOP = -1;
inline constexpr A_long AEGP_MENU_INSERT_AT_BOTTOM = 0;
inline constexpr AEGP_HookPriority AEGP_HP_BeforeAE = 1;
inline constexpr AEGP_Command AEGP_Command_ALL = 0;

/// The exported entry point of a plug-in, called once. Never unloaded afterwards.
using AEGP_PluginInitFuncPrototype = A_Err(SPBasicSuite* pica_basicP, A_long major_versionL,
                                           A_long minor_versionL, AEGP_PluginID aegp_plugin_id,
                                           AEGP_GlobalRefcon* global_refconP);

/// Called now and then between user actions.
using AEGP_IdleHook = A_Err (*)(AEGP_GlobalRefcon plugin_refconP, AEGP_IdleRefcon refconP,
                                A_long* max_sleepPL);
/// Called for a command before the host handles it; sets `*handledPB` to keep it from the host.
using AEGP_CommandHook = A_Err (*)(AEGP_GlobalRefcon plugin_refconP, AEGP_CommandRefcon refconP,
                                   AEGP_Command command, AEGP_HookPriority hook_priority,
                                   A_Boolean already_handledB, A_Boolean* handledPB);
/// Called each time a menu is about to be drawn; items stay disabled unless enabled here.
using AEGP_UpdateMenuHook = A_Err (*)(AEGP_GlobalRefcon plugin_refconP,
                                      AEGP_UpdateMenuRefcon refconP, AEGP_WindowType active_window);
/// Called once, at the host's shutdown.
using AEGP_DeathHook = A_Err (*)(AEGP_GlobalRefcon plugin_refconP, AEGP_DeathRefcon refconP);

inline constexpr char kAEGPRegisterSuite[] = "AEGP Register Suite";
inline constexpr int32 kAEGPRegisterSuiteVersion5 = 6;
struct AEGP_RegisterSuite5 {
  A_Err (*AEGP_RegisterCommandHook)(AEGP_PluginID, AEGP_HookPriority, AEGP_Command,
                                    AEGP_CommandHook, AEGP_CommandRefcon);
  A_Err (*AEGP_RegisterUpdateMenuHook)(AEGP_PluginID, AEGP_UpdateMenuHook, AEGP_UpdateMenuRefcon);
  A_Err (*AEGP_RegisterDeathHook)(AEGP_PluginID, AEGP_DeathHook, AEGP_DeathRefcon);
  A_Err (*AEGP_RegisterIdleHook)(AEGP_PluginID, AEGP_IdleHook, AEGP_IdleRefcon);
};

inline constexpr char kAEGPCommandSuite[] = "AEGP Command Suite";
inline constexpr int32 kAEGPCommandSuiteVersion1 = 1;
struct AEGP_CommandSuite1 {
  A_Err (*AEGP_GetUniqueCommand)(AEGP_Command* unique_commandP);
  A_Err (*AEGP_InsertMenuCommand)(AEGP_Command, const A_char* nameZ, AEGP_MenuID,
                                  A_long after_itemL);
  /// Until the menu closes.
  A_Err (*AEGP_EnableCommand)(AEGP_Command);
  A_Err (*AEGP_DoCommand)(AEGP_Command);
};

inline constexpr char kAEGPUtilitySuite[] = "AEGP Utility Suite";
inline constexpr int32 kAEGPUtilitySuiteVersion3 = 7;
struct AEGP_UtilitySuite3 {
  /// Shows the user a message.
  A_Err (*AEGP_ReportInfo)(AEGP_PluginID, const A_char* info_stringZ);
};

inline constexpr int32 kAEGPUtilitySuiteVersion6 = 13;
struct AEGP_UtilitySuite6 {
  /// Scans the system's fonts again.
  A_Err (*AEGP_UpdateFontList)();
};

inline constexpr char kAEGPProjSuite[] = "AEGP Proj Suite";
inline constexpr int32 kAEGPProjSuiteVersion6 = 9;
struct AEGP_ProjSuite6 {
  A_Err (*AEGP_GetNumProjects)(A_long* num_projPL);
  A_Err (*AEGP_GetProjectByIndex)(A_long proj_indexL, AEGP_ProjectH* projPH);
  A_Err (*AEGP_GetProjectName)(AEGP_ProjectH, A_char* nameZ);
  /// NUL-terminated UTF-16 in a handle that the caller frees; the empty text if never saved.
  A_Err (*AEGP_GetProjectPath)(AEGP_ProjectH, AEGP_MemHandle* unicode_pathPH);
  A_Err (*AEGP_GetProjectRootFolder)();
  A_Err (*AEGP_SaveProjectToPath)();
  A_Err (*AEGP_GetProjectTimeDisplay)();
  A_Err (*AEGP_SetProjectTimeDisplay)();
  A_Err (*AEGP_ProjectIsDirty)(AEGP_ProjectH, A_Boolean* is_dirtyPB);
  A_Err (*AEGP_SaveProjectAs)();
  /// Closes the current project without saving it.
  A_Err (*AEGP_NewProject)(AEGP_ProjectH* new_projectPH);
  /// `pathZ` is NUL-terminated. Closes the current project without saving it.
  A_Err (*AEGP_OpenProjectFromPath)(const A_UTF16Char* pathZ, AEGP_ProjectH* projectPH);
  A_Err (*AEGP_GetProjectBitDepth)();
  A_Err (*AEGP_SetProjectBitDepth)();
};

inline constexpr char kAEGPMemorySuite[] = "AEGP Memory Suite";
inline constexpr int32 kAEGPMemorySuiteVersion1 = 1;
struct AEGP_MemorySuite1 {
  A_Err (*AEGP_NewMemHandle)();
  A_Err (*AEGP_FreeMemHandle)(AEGP_MemHandle);
  /// Locks nest; the pointer is valid until the unlock.
  A_Err (*AEGP_LockMemHandle)(AEGP_MemHandle, void** ptr_to_ptr);
  A_Err (*AEGP_UnlockMemHandle)(AEGP_MemHandle);
  A_Err (*AEGP_GetMemHandleSize)();
  A_Err (*AEGP_ResizeMemHandle)();
  A_Err (*AEGP_SetMemReportingOn)();
  A_Err (*AEGP_GetMemStats)();
};

inline constexpr char kPFAdvAppSuite[] = "PF AE Adv App Suite";
inline constexpr int32 kPFAdvAppSuiteVersion2 = 2;
struct PFAdvAppSuite2 {
  A_Err (*PF_RefreshAllWindows)();
};

inline constexpr char kAEGPPersistentDataSuite[] = "AEGP Persistent Data Suite";
inline constexpr int32 kAEGPPersistentDataSuiteVersion3 = 3;
struct AEGP_PersistentDataSuite3 {
  A_Err (*AEGP_GetApplicationBlob)(AEGP_PersistentBlobH* blobPH);
  A_Err (*AEGP_SetString)(AEGP_PersistentBlobH, const A_char* section_keyZ,
                          const A_char* value_keyZ, const A_char* strZ);
};

inline constexpr int32 kAEGPPersistentDataSuiteVersion4 = 4;
struct AEGP_PersistentDataSuite4 {
  /// `buf_sizeLu` is in bytes, the terminator included; the default where nothing is stored.
  A_Err (*AEGP_GetString)(AEGP_PersistentBlobH, const A_char* section_keyZ,
                          const A_char* value_keyZ, const A_char* defaultZ0, A_u_long buf_sizeLu,
                          char* bufZ, A_u_long* actual_szLu0);
};
