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

// The function that stands at that position of the suite, and its arguments.
#define HOST_FACT(suite, function, position, ...)                         \
  static_assert(offsetof(suite, function) == (position) * sizeof(void*)); \
  static_assert(std::is_same_v<decltype(suite::function), int32_t (*)(__VA_ARGS__)>)

HOST_FACT(SPBasicSuite, AcquireSuite, 0, Text, int32_t, const void**);
HOST_FACT(SPBasicSuite, ReleaseSuite, 1, Text, int32_t);

HOST_FACT(AEGP_RegisterSuite5, AEGP_RegisterCommandHook, 0, int32_t, uint32_t, int32_t, CommandHook,
          _AEGP_CommandRefcon*);
HOST_FACT(AEGP_RegisterSuite5, AEGP_RegisterUpdateMenuHook, 1, int32_t, UpdateMenuHook,
          _AEGP_UpdateMenuRefcon*);
HOST_FACT(AEGP_RegisterSuite5, AEGP_RegisterDeathHook, 2, int32_t, DeathHook, _AEGP_DeathRefcon*);
HOST_FACT(AEGP_RegisterSuite5, AEGP_RegisterIdleHook, 8, int32_t, IdleHook, _AEGP_IdleRefcon*);

HOST_FACT(AEGP_CommandSuite1, AEGP_GetUniqueCommand, 0, int32_t*);
HOST_FACT(AEGP_CommandSuite1, AEGP_InsertMenuCommand, 1, int32_t, Text, char, int32_t);
HOST_FACT(AEGP_CommandSuite1, AEGP_EnableCommand, 4, int32_t);
HOST_FACT(AEGP_CommandSuite1, AEGP_DoCommand, 7, int32_t);

HOST_FACT(UtilitySuiteVersion7, AEGP_ReportInfo, 0, int32_t, Text);
HOST_FACT(AEGP_UtilitySuite6, AEGP_UpdateFontList, 31);

HOST_FACT(AEGP_ProjSuite6, AEGP_GetProjectByIndex, 1, int32_t, Project*);
HOST_FACT(AEGP_ProjSuite6, AEGP_GetProjectPath, 3, Project, Memory*);
HOST_FACT(AEGP_ProjSuite6, AEGP_ProjectIsDirty, 8, Project, unsigned char*);
HOST_FACT(AEGP_ProjSuite6, AEGP_NewProject, 10, Project*);
HOST_FACT(AEGP_ProjSuite6, AEGP_OpenProjectFromPath, 11, const unsigned short*, Project*);

HOST_FACT(AEGP_MemorySuite1, AEGP_FreeMemHandle, 1, Memory);
HOST_FACT(AEGP_MemorySuite1, AEGP_LockMemHandle, 2, Memory, void**);
HOST_FACT(AEGP_MemorySuite1, AEGP_UnlockMemHandle, 3, Memory);

HOST_FACT(PF_AdvAppSuite2, PF_RefreshAllWindows, 5);

HOST_FACT(PersistentDataSuiteVersion3, AEGP_GetApplicationBlob, 0, Blob*);
HOST_FACT(PersistentDataSuiteVersion3, AEGP_SetString, 13, Blob, Text, Text, Text);
HOST_FACT(AEGP_PersistentDataSuite4, AEGP_GetString, 8, Blob, Text, Text, Text, uint32_t, char*,
          uint32_t*);

// Headers that declare the old suites define these macros.
#ifdef kAEGPUtilitySuiteVersion3
static_assert(kAEGPUtilitySuiteVersion3 == 7);
HOST_FACT(AEGP_UtilitySuite3, AEGP_ReportInfo, 0, int32_t, Text);
#endif
#ifdef kAEGPPersistentDataSuiteVersion3
static_assert(kAEGPPersistentDataSuiteVersion3 == 3);
HOST_FACT(AEGP_PersistentDataSuite3, AEGP_GetApplicationBlob, 0, Blob*);
HOST_FACT(AEGP_PersistentDataSuite3, AEGP_SetString, 13, Blob, Text, Text, Text);
#endif

#undef HOST_FACT

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
