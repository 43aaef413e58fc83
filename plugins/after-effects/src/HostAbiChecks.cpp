#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "AE_AdvEffectSuites.h"
#include "AE_GeneralPlug.h"
#include "OldSuites.h"
#include "SPBasic.h"

// Compile-time checks of the host's headers, ours or the SDK's. Suites are called by position, so a
// wrong offset would call the wrong function.

namespace {

using Project = _AEGP_Project**;
using Memory = _Up_OpaqueMem**;
using Blob = AEGP_PersistentBlobH;
using Text = const char*;

using IdleHook = int32_t (*)(_AEGP_GlobalRefcon*, _AEGP_IdleRefcon*, int32_t*);
using UpdateMenuHook = int32_t (*)(_AEGP_GlobalRefcon*, _AEGP_UpdateMenuRefcon*, char);
using DeathHook = int32_t (*)(_AEGP_GlobalRefcon*, _AEGP_DeathRefcon*);
using CommandHook = int32_t (*)(_AEGP_GlobalRefcon*, _AEGP_CommandRefcon*, int32_t, uint32_t,
                                unsigned char, unsigned char*);

// Checks the position of a function in its suite, and its arguments.
#define CHECK_HOST_FUNCTION(suite, function, position, ...)               \
  static_assert(offsetof(suite, function) == (position) * sizeof(void*)); \
  static_assert(std::is_same_v<decltype(suite::function), int32_t (*)(__VA_ARGS__)>)

CHECK_HOST_FUNCTION(SPBasicSuite, AcquireSuite, 0, Text, int32_t, const void**);
CHECK_HOST_FUNCTION(SPBasicSuite, ReleaseSuite, 1, Text, int32_t);

CHECK_HOST_FUNCTION(AEGP_RegisterSuite5, AEGP_RegisterCommandHook, 0, int32_t, uint32_t, int32_t,
                    CommandHook, _AEGP_CommandRefcon*);
CHECK_HOST_FUNCTION(AEGP_RegisterSuite5, AEGP_RegisterUpdateMenuHook, 1, int32_t, UpdateMenuHook,
                    _AEGP_UpdateMenuRefcon*);
CHECK_HOST_FUNCTION(AEGP_RegisterSuite5, AEGP_RegisterDeathHook, 2, int32_t, DeathHook,
                    _AEGP_DeathRefcon*);
CHECK_HOST_FUNCTION(AEGP_RegisterSuite5, AEGP_RegisterIdleHook, 8, int32_t, IdleHook,
                    _AEGP_IdleRefcon*);

CHECK_HOST_FUNCTION(AEGP_CommandSuite1, AEGP_GetUniqueCommand, 0, int32_t*);
CHECK_HOST_FUNCTION(AEGP_CommandSuite1, AEGP_InsertMenuCommand, 1, int32_t, Text, char, int32_t);
CHECK_HOST_FUNCTION(AEGP_CommandSuite1, AEGP_EnableCommand, 4, int32_t);
CHECK_HOST_FUNCTION(AEGP_CommandSuite1, AEGP_DoCommand, 7, int32_t);

CHECK_HOST_FUNCTION(UtilitySuiteVersion7, AEGP_ReportInfo, 0, int32_t, Text);
CHECK_HOST_FUNCTION(AEGP_UtilitySuite6, AEGP_UpdateFontList, 31);

CHECK_HOST_FUNCTION(AEGP_ProjSuite6, AEGP_GetProjectByIndex, 1, int32_t, Project*);
CHECK_HOST_FUNCTION(AEGP_ProjSuite6, AEGP_GetProjectPath, 3, Project, Memory*);
CHECK_HOST_FUNCTION(AEGP_ProjSuite6, AEGP_ProjectIsDirty, 8, Project, unsigned char*);
CHECK_HOST_FUNCTION(AEGP_ProjSuite6, AEGP_NewProject, 10, Project*);
CHECK_HOST_FUNCTION(AEGP_ProjSuite6, AEGP_OpenProjectFromPath, 11, const unsigned short*, Project*);

CHECK_HOST_FUNCTION(AEGP_MemorySuite1, AEGP_FreeMemHandle, 1, Memory);
CHECK_HOST_FUNCTION(AEGP_MemorySuite1, AEGP_LockMemHandle, 2, Memory, void**);
CHECK_HOST_FUNCTION(AEGP_MemorySuite1, AEGP_UnlockMemHandle, 3, Memory);

CHECK_HOST_FUNCTION(PF_AdvAppSuite2, PF_RefreshAllWindows, 5);

CHECK_HOST_FUNCTION(PersistentDataSuiteVersion3, AEGP_GetApplicationBlob, 0, Blob*);
CHECK_HOST_FUNCTION(PersistentDataSuiteVersion3, AEGP_SetString, 13, Blob, Text, Text, Text);
CHECK_HOST_FUNCTION(AEGP_PersistentDataSuite4, AEGP_GetString, 8, Blob, Text, Text, Text, uint32_t,
                    char*, uint32_t*);

// Headers that declare the old suites define these macros.
#ifdef kAEGPUtilitySuiteVersion3
static_assert(kAEGPUtilitySuiteVersion3 == 7);
CHECK_HOST_FUNCTION(AEGP_UtilitySuite3, AEGP_ReportInfo, 0, int32_t, Text);
#endif
#ifdef kAEGPPersistentDataSuiteVersion3
static_assert(kAEGPPersistentDataSuiteVersion3 == 3);
CHECK_HOST_FUNCTION(AEGP_PersistentDataSuite3, AEGP_GetApplicationBlob, 0, Blob*);
CHECK_HOST_FUNCTION(AEGP_PersistentDataSuite3, AEGP_SetString, 13, Blob, Text, Text, Text);
#endif

#undef CHECK_HOST_FUNCTION

// Macros or enumerators.
constexpr int kWindowMenu = AEGP_Menu_WINDOW;
constexpr int kSorted = AEGP_MENU_INSERT_SORTED;
constexpr int kBeforeHost = AEGP_HP_BeforeAE;
constexpr int kAllCommands = AEGP_Command_ALL;
constexpr int kNoError = A_Err_NONE;
static_assert(kWindowMenu == 7);
static_assert(kSorted == -2);
static_assert(kBeforeHost == 1);
static_assert(kAllCommands == 0);
static_assert(kNoError == 0);
static_assert(std::is_same_v<A_Err, int32_t>);

}  // namespace
