/* The host's interface is one for C as well. */

/* Has to come before all others. */
#include "AEConfig.h"

#include "A.h"
#include "AE_AdvEffectSuites.h"
#include "AE_GeneralPlug.h"
#include "SPBasic.h"

_Static_assert(sizeof(A_UTF16Char) == 2 && sizeof(A_FpLong) == 8, "base types");
_Static_assert(sizeof(AEGP_MenuID) == 1 && sizeof(AEGP_WindowType) == 1, "enumerations of old");
_Static_assert(A_Err_GENERIC == 1 && PF_Err_BAD_CALLBACK_PARAM == 516, "errors");
_Static_assert(AEGP_HP_BeforeAE == 1 && AEGP_HP_AfterAE == 2 && AEGP_Command_ALL == 0, "hooks");
_Static_assert(AEGP_Menu_WINDOW == 7 && AEGP_MENU_INSERT_SORTED + 2 == 0, "menus");
_Static_assert(AEGP_MENU_INSERT_AT_BOTTOM + 1 == 0 && AEGP_MENU_INSERT_AT_TOP == 0,
               "places in menus");
_Static_assert((AEGP_HookPriority)-1 > 0, "priorities are unsigned");
