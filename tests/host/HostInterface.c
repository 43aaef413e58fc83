/* The host's interface is one for C as well. */

/* Has to come before all others. */
#include "AEConfig.h"

#include "A.h"
#include "AE_AdvEffectSuites.h"
#include "AE_GeneralPlug.h"
#include "SPBasic.h"

_Static_assert(sizeof(A_UTF16Char) == 2 && sizeof(A_FpLong) == 8, "base types");
_Static_assert(sizeof(AEGP_MenuID) == 1 && sizeof(AEGP_WindowType) == 1, "enumerations of old");
_Static_assert((AEGP_HookPriority)-1 > 0, "priorities are unsigned");
