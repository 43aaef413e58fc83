#pragma once

#include "A.h"
#include "SPBasic.h"

/* The host's interface for general plug-ins: hooks, and the suites whose names begin with `AEGP_`,
   whole and in the host's order, because the host is called by position. C11 and C++.

   The number in a struct's name is the suite's number; the name and the version that are passed to
   `SPBasicSuite::AcquireSuite` stand in the comment above it. Every function returns 0 for success
   and is called on the main thread. Handles belong to the host unless a comment says otherwise. */

typedef A_long AEGP_PluginID;
typedef A_long AEGP_Command;
typedef A_u_long AEGP_HookPriority;
typedef A_LegacyEnumType AEGP_MenuID;
typedef A_LegacyEnumType AEGP_WindowType;
typedef A_u_long AEGP_MemSize;
typedef A_long AEGP_MemFlag;
typedef A_long AEGP_PersistentType;

typedef struct _AEGP_Project** AEGP_ProjectH;
typedef struct _Up_OpaqueMem** AEGP_MemHandle;
typedef struct _AEGP_PersistentBlob** AEGP_PersistentBlobH;

typedef struct _AEGP_GlobalRefcon* AEGP_GlobalRefcon;
typedef struct _AEGP_IdleRefcon* AEGP_IdleRefcon;
typedef struct _AEGP_CommandRefcon* AEGP_CommandRefcon;
typedef struct _AEGP_UpdateMenuRefcon* AEGP_UpdateMenuRefcon;
typedef struct _AEGP_DeathRefcon* AEGP_DeathRefcon;

enum { AEGP_Menu_WINDOW = 7 };
enum { AEGP_HP_BeforeAE = 1, AEGP_HP_AfterAE = 2 };
#define AEGP_MENU_INSERT_SORTED (-2)
#define AEGP_MENU_INSERT_AT_BOTTOM (-1)
#define AEGP_MENU_INSERT_AT_TOP 0
#define AEGP_Command_ALL 0

/* The exported entry point of a plug-in, called once. The plug-in is never unloaded. */
typedef A_Err(AEGP_PluginInitFuncPrototype)(SPBasicSuite* pica_basicP, A_long major_versionL,
                                            A_long minor_versionL, AEGP_PluginID aegp_plugin_id,
                                            AEGP_GlobalRefcon* global_refconP);

/* Called now and then between user actions. */
typedef A_Err (*AEGP_IdleHook)(AEGP_GlobalRefcon plugin_refconP, AEGP_IdleRefcon refconP,
                               A_long* max_sleepPL);
/* Called for a command before or after the host handles it; sets `*handledPB` to keep it from the
   host. */
typedef A_Err (*AEGP_CommandHook)(AEGP_GlobalRefcon plugin_refconP, AEGP_CommandRefcon refconP,
                                  AEGP_Command command, AEGP_HookPriority hook_priority,
                                  A_Boolean already_handledB, A_Boolean* handledPB);
/* Called each time a menu is about to be drawn. Items stay disabled unless enabled here. */
typedef A_Err (*AEGP_UpdateMenuHook)(AEGP_GlobalRefcon plugin_refconP,
                                     AEGP_UpdateMenuRefcon refconP, AEGP_WindowType active_window);
/* Called once, when the host shuts down. */
typedef A_Err (*AEGP_DeathHook)(AEGP_GlobalRefcon plugin_refconP, AEGP_DeathRefcon refconP);

/* The suites' names, and the version of each struct of them. The number in a version macro's name
   is that of the struct. Its value is passed to `AcquireSuite`. */
#define kAEGPRegisterSuite "AEGP Register Suite"
#define kAEGPRegisterSuiteVersion5 6
#define kAEGPCommandSuite "AEGP Command Suite"
#define kAEGPCommandSuiteVersion1 1
#define kAEGPUtilitySuite "AEGP Utility Suite"
#define kAEGPUtilitySuiteVersion3 7
#define kAEGPUtilitySuiteVersion6 13
#define kAEGPProjSuite "AEGP Proj Suite"
#define kAEGPProjSuiteVersion6 9
#define kAEGPMemorySuite "AEGP Memory Suite"
#define kAEGPMemorySuiteVersion1 1
#define kAEGPPersistentDataSuite "AEGP Persistent Data Suite"
#define kAEGPPersistentDataSuiteVersion3 3
#define kAEGPPersistentDataSuiteVersion4 4

/* "AEGP Register Suite", version 6 */
typedef struct AEGP_RegisterSuite5 {
  A_Err (*AEGP_RegisterCommandHook)(AEGP_PluginID aegp_plugin_id, AEGP_HookPriority hook_priority,
                                    AEGP_Command command, AEGP_CommandHook command_hook_func,
                                    AEGP_CommandRefcon refconP);
  A_Err (*AEGP_RegisterUpdateMenuHook)(AEGP_PluginID aegp_plugin_id,
                                       AEGP_UpdateMenuHook update_menu_hook_func,
                                       AEGP_UpdateMenuRefcon refconP);
  A_Err (*AEGP_RegisterDeathHook)(AEGP_PluginID aegp_plugin_id, AEGP_DeathHook death_hook_func,
                                  AEGP_DeathRefcon refconP);
  A_UnknownFunction AEGP_RegisterVersionHook;
  A_UnknownFunction AEGP_RegisterAboutStringHook;
  A_UnknownFunction AEGP_RegisterAboutHook;
  A_UnknownFunction AEGP_RegisterArtisan;
  A_UnknownFunction AEGP_RegisterIO;
  A_Err (*AEGP_RegisterIdleHook)(AEGP_PluginID aegp_plugin_id, AEGP_IdleHook idle_hook_func,
                                 AEGP_IdleRefcon refconP);
  A_UnknownFunction AEGP_RegisterTracker;
  A_UnknownFunction AEGP_RegisterInteractiveArtisan;
  A_UnknownFunction AEGP_RegisterPresetLocalizationString;
} AEGP_RegisterSuite5;

/* "AEGP Command Suite", version 1 */
typedef struct AEGP_CommandSuite1 {
  A_Err (*AEGP_GetUniqueCommand)(AEGP_Command* unique_commandP);
  /* Only sorted insertion works in the Window menu. */
  A_Err (*AEGP_InsertMenuCommand)(AEGP_Command command, const A_char* nameZ, AEGP_MenuID menu_id,
                                  A_long after_itemL);
  A_Err (*AEGP_RemoveMenuCommand)(AEGP_Command command);
  A_Err (*AEGP_SetMenuCommandName)(AEGP_Command command, const A_char* nameZ);
  /* Lasts until the menu closes. */
  A_Err (*AEGP_EnableCommand)(AEGP_Command command);
  A_Err (*AEGP_DisableCommand)(AEGP_Command command);
  A_Err (*AEGP_CheckMarkMenuCommand)(AEGP_Command command, A_Boolean checkB);
  A_Err (*AEGP_DoCommand)(AEGP_Command command);
} AEGP_CommandSuite1;

/* "AEGP Utility Suite", version 7 */
typedef struct AEGP_UtilitySuite3 {
  /* Shows the user a message. */
  A_Err (*AEGP_ReportInfo)(AEGP_PluginID aegp_plugin_id, const A_char* info_stringZ);
  A_UnknownFunction AEGP_GetDriverPluginInitFuncVersion;
  A_UnknownFunction AEGP_GetDriverImplementationVersion;
  A_UnknownFunction AEGP_StartQuietErrors;
  A_UnknownFunction AEGP_EndQuietErrors;
  A_Err (*AEGP_StartUndoGroup)(const A_char* undo_nameZ);
  A_Err (*AEGP_EndUndoGroup)(void);
  A_UnknownFunction AEGP_RegisterWithAEGP;
  A_UnknownFunction AEGP_GetMainHWND;
  A_UnknownFunction AEGP_ShowHideAllFloaters;
  A_UnknownFunction AEGP_PaintPalGetForeColor;
  A_UnknownFunction AEGP_PaintPalGetBackColor;
  A_UnknownFunction AEGP_PaintPalSetForeColor;
  A_UnknownFunction AEGP_PaintPalSetBackColor;
  A_UnknownFunction AEGP_CharPalGetFillColor;
  A_UnknownFunction AEGP_CharPalGetStrokeColor;
  A_UnknownFunction AEGP_CharPalSetFillColor;
  A_UnknownFunction AEGP_CharPalSetStrokeColor;
  A_UnknownFunction AEGP_CharPalIsFillColorUIFrontmost;
  A_UnknownFunction AEGP_ConvertFpLongToHSFRatio;
  A_UnknownFunction AEGP_ConvertHSFRatioToFpLong;
  /* Has the idle hooks called soon. */
  A_Err (*AEGP_CauseIdleRoutinesToBeCalled)(void);
  A_UnknownFunction AEGP_GetSuppressInteractiveUI;
  A_Err (*AEGP_WriteToOSConsole)(const A_char* textZ);
  A_Err (*AEGP_WriteToDebugLog)(const A_char* subsystemZ, const A_char* event_typeZ,
                                const A_char* infoZ);
} AEGP_UtilitySuite3;

/* "AEGP Utility Suite", version 13 */
typedef struct AEGP_UtilitySuite6 {
  /* Shows the user a message. */
  A_Err (*AEGP_ReportInfo)(AEGP_PluginID aegp_plugin_id, const A_char* info_stringZ);
  A_Err (*AEGP_ReportInfoUnicode)(AEGP_PluginID aegp_plugin_id, const A_UTF16Char* info_stringP);
  A_UnknownFunction AEGP_GetDriverPluginInitFuncVersion;
  A_UnknownFunction AEGP_GetDriverImplementationVersion;
  A_UnknownFunction AEGP_StartQuietErrors;
  A_UnknownFunction AEGP_EndQuietErrors;
  A_UnknownFunction AEGP_GetLastErrorMessage;
  A_Err (*AEGP_StartUndoGroup)(const A_char* undo_nameZ);
  A_Err (*AEGP_EndUndoGroup)(void);
  A_UnknownFunction AEGP_RegisterWithAEGP;
  A_UnknownFunction AEGP_GetMainHWND;
  A_UnknownFunction AEGP_ShowHideAllFloaters;
  A_UnknownFunction AEGP_PaintPalGetForeColor;
  A_UnknownFunction AEGP_PaintPalGetBackColor;
  A_UnknownFunction AEGP_PaintPalSetForeColor;
  A_UnknownFunction AEGP_PaintPalSetBackColor;
  A_UnknownFunction AEGP_CharPalGetFillColor;
  A_UnknownFunction AEGP_CharPalGetStrokeColor;
  A_UnknownFunction AEGP_CharPalSetFillColor;
  A_UnknownFunction AEGP_CharPalSetStrokeColor;
  A_UnknownFunction AEGP_CharPalIsFillColorUIFrontmost;
  A_UnknownFunction AEGP_ConvertFpLongToHSFRatio;
  A_UnknownFunction AEGP_ConvertHSFRatioToFpLong;
  /* Has the idle hooks called soon. */
  A_Err (*AEGP_CauseIdleRoutinesToBeCalled)(void);
  A_UnknownFunction AEGP_GetSuppressInteractiveUI;
  A_Err (*AEGP_WriteToOSConsole)(const A_char* textZ);
  A_Err (*AEGP_WriteToDebugLog)(const A_char* subsystemZ, const A_char* event_typeZ,
                                const A_char* infoZ);
  A_Err (*AEGP_IsScriptingAvailable)(A_Boolean* outAvailablePB);
  A_UnknownFunction AEGP_ExecuteScript;
  A_Err (*AEGP_HostIsActivated)(A_Boolean* is_activatedPB);
  A_UnknownFunction AEGP_GetPluginPlatformRef;
  /* Scans the system's fonts again. */
  A_Err (*AEGP_UpdateFontList)(void);
  A_UnknownFunction AEGP_GetPluginPaths;
} AEGP_UtilitySuite6;

/* "AEGP Proj Suite", version 9 */
typedef struct AEGP_ProjSuite6 {
  A_Err (*AEGP_GetNumProjects)(A_long* num_projPL);
  /* There is one project at the most, at index 0. */
  A_Err (*AEGP_GetProjectByIndex)(A_long proj_indexL, AEGP_ProjectH* projPH);
  A_Err (*AEGP_GetProjectName)(AEGP_ProjectH projH, A_char* nameZ);
  /* NUL-terminated UTF-16 in a handle that the caller frees; empty if never saved. */
  A_Err (*AEGP_GetProjectPath)(AEGP_ProjectH projH, AEGP_MemHandle* unicode_pathPH);
  A_UnknownFunction AEGP_GetProjectRootFolder;
  A_UnknownFunction AEGP_SaveProjectToPath;
  A_UnknownFunction AEGP_GetProjectTimeDisplay;
  A_UnknownFunction AEGP_SetProjectTimeDisplay;
  A_Err (*AEGP_ProjectIsDirty)(AEGP_ProjectH projH, A_Boolean* is_dirtyPB);
  A_UnknownFunction AEGP_SaveProjectAs;
  /* Closes the current project without saving it. */
  A_Err (*AEGP_NewProject)(AEGP_ProjectH* new_projectPH);
  /* Closes the current project without saving it. `pathZ` is NUL-terminated. */
  A_Err (*AEGP_OpenProjectFromPath)(const A_UTF16Char* pathZ, AEGP_ProjectH* projectPH);
  A_UnknownFunction AEGP_GetProjectBitDepth;
  A_UnknownFunction AEGP_SetProjectBitDepth;
} AEGP_ProjSuite6;

/* "AEGP Memory Suite", version 1 */
typedef struct AEGP_MemorySuite1 {
  A_Err (*AEGP_NewMemHandle)(AEGP_PluginID plugin_id, const A_char* whatZ, AEGP_MemSize size,
                             AEGP_MemFlag flags, AEGP_MemHandle* memPH);
  A_Err (*AEGP_FreeMemHandle)(AEGP_MemHandle memH);
  /* Locks nest. The pointer is valid until the unlock. */
  A_Err (*AEGP_LockMemHandle)(AEGP_MemHandle memH, void** ptr_to_ptr);
  A_Err (*AEGP_UnlockMemHandle)(AEGP_MemHandle memH);
  A_Err (*AEGP_GetMemHandleSize)(AEGP_MemHandle memH, AEGP_MemSize* sizeP);
  A_Err (*AEGP_ResizeMemHandle)(const A_char* whatZ, AEGP_MemSize new_size, AEGP_MemHandle memH);
  A_UnknownFunction AEGP_SetMemReportingOn;
  A_Err (*AEGP_GetMemStats)(AEGP_PluginID plugin_id, A_long* countPL, A_long* sizePL);
} AEGP_MemorySuite1;

/* "AEGP Persistent Data Suite", version 3 */
typedef struct AEGP_PersistentDataSuite3 {
  A_Err (*AEGP_GetApplicationBlob)(AEGP_PersistentBlobH* blobPH);
  A_Err (*AEGP_GetNumSections)(AEGP_PersistentBlobH blobPH, A_long* num_sectionPL);
  A_UnknownFunction AEGP_GetSectionKeyByIndex;
  A_Err (*AEGP_DoesKeyExist)(AEGP_PersistentBlobH blobPH, const A_char* section_keyZ,
                             const A_char* value_keyZ, A_Boolean* existsPB);
  A_Err (*AEGP_GetNumKeys)(AEGP_PersistentBlobH blobPH, const A_char* section_keyZ,
                           A_long* num_keysPL);
  A_UnknownFunction AEGP_GetValueKeyByIndex;
  A_UnknownFunction AEGP_GetDataHandle;
  A_UnknownFunction AEGP_GetData;
  /* Gives the default where nothing is stored. Sizes are in bytes, with the terminator. */
  A_Err (*AEGP_GetString)(AEGP_PersistentBlobH blobPH, const A_char* section_keyZ,
                          const A_char* value_keyZ, const A_char* defaultZ0, A_u_long buf_sizeLu,
                          A_char* bufZ, A_u_long* actual_buf_sizeLu0);
  A_Err (*AEGP_GetLong)(AEGP_PersistentBlobH blobPH, const A_char* section_keyZ,
                        const A_char* value_keyZ, A_long defaultL, A_long* valuePL);
  A_Err (*AEGP_GetFpLong)(AEGP_PersistentBlobH blobPH, const A_char* section_keyZ,
                          const A_char* value_keyZ, A_FpLong defaultF, A_FpLong* valuePF);
  A_UnknownFunction AEGP_SetDataHandle;
  A_UnknownFunction AEGP_SetData;
  A_Err (*AEGP_SetString)(AEGP_PersistentBlobH blobPH, const A_char* section_keyZ,
                          const A_char* value_keyZ, const A_char* strZ);
  A_Err (*AEGP_SetLong)(AEGP_PersistentBlobH blobPH, const A_char* section_keyZ,
                        const A_char* value_keyZ, A_long valueL);
  A_Err (*AEGP_SetFpLong)(AEGP_PersistentBlobH blobPH, const A_char* section_keyZ,
                          const A_char* value_keyZ, A_FpLong valueF);
  A_Err (*AEGP_DeleteEntry)(AEGP_PersistentBlobH blobPH, const A_char* section_keyZ,
                            const A_char* value_keyZ);
  A_UnknownFunction AEGP_GetPrefsDirectory;
} AEGP_PersistentDataSuite3;

/* "AEGP Persistent Data Suite", version 4 */
typedef struct AEGP_PersistentDataSuite4 {
  A_Err (*AEGP_GetApplicationBlob)(AEGP_PersistentType blob_type, AEGP_PersistentBlobH* blobPH);
  A_Err (*AEGP_GetNumSections)(AEGP_PersistentBlobH blobPH, A_long* num_sectionPL);
  A_UnknownFunction AEGP_GetSectionKeyByIndex;
  A_Err (*AEGP_DoesKeyExist)(AEGP_PersistentBlobH blobPH, const A_char* section_keyZ,
                             const A_char* value_keyZ, A_Boolean* existsPB);
  A_Err (*AEGP_GetNumKeys)(AEGP_PersistentBlobH blobPH, const A_char* section_keyZ,
                           A_long* num_keysPL);
  A_UnknownFunction AEGP_GetValueKeyByIndex;
  A_UnknownFunction AEGP_GetDataHandle;
  A_UnknownFunction AEGP_GetData;
  /* Gives the default where nothing is stored. Sizes are in bytes, with the terminator. */
  A_Err (*AEGP_GetString)(AEGP_PersistentBlobH blobPH, const A_char* section_keyZ,
                          const A_char* value_keyZ, const A_char* defaultZ0, A_u_long buf_sizeLu,
                          A_char* bufZ, A_u_long* actual_buf_sizeLu0);
  A_Err (*AEGP_GetLong)(AEGP_PersistentBlobH blobPH, const A_char* section_keyZ,
                        const A_char* value_keyZ, A_long defaultL, A_long* valuePL);
  A_Err (*AEGP_GetFpLong)(AEGP_PersistentBlobH blobPH, const A_char* section_keyZ,
                          const A_char* value_keyZ, A_FpLong defaultF, A_FpLong* valuePF);
  A_UnknownFunction AEGP_GetTime;
  A_UnknownFunction AEGP_GetARGB;
  A_UnknownFunction AEGP_SetDataHandle;
  A_UnknownFunction AEGP_SetData;
  A_Err (*AEGP_SetString)(AEGP_PersistentBlobH blobPH, const A_char* section_keyZ,
                          const A_char* value_keyZ, const A_char* strZ);
  A_Err (*AEGP_SetLong)(AEGP_PersistentBlobH blobPH, const A_char* section_keyZ,
                        const A_char* value_keyZ, A_long valueL);
  A_Err (*AEGP_SetFpLong)(AEGP_PersistentBlobH blobPH, const A_char* section_keyZ,
                          const A_char* value_keyZ, A_FpLong valueF);
  A_UnknownFunction AEGP_SetTime;
  A_UnknownFunction AEGP_SetARGB;
  A_Err (*AEGP_DeleteEntry)(AEGP_PersistentBlobH blobPH, const A_char* section_keyZ,
                            const A_char* value_keyZ);
  A_UnknownFunction AEGP_GetPrefsDirectory;
} AEGP_PersistentDataSuite4;
