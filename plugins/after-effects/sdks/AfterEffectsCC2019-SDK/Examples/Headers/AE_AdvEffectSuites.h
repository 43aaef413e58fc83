#pragma once

#include "A.h"

/* The host's suites whose names begin with `PF_`, as far as general plug-ins use them. C11 and
   C++. */

typedef A_Err PF_Err;
enum { PF_Err_BAD_CALLBACK_PARAM = 516 }; /* what a missing suite is reported as */

#define kPFAdvAppSuite "PF AE Adv App Suite"
#define kPFAdvAppSuiteVersion2 2

/* "PF AE Adv App Suite", version 2 */
typedef struct PF_AdvAppSuite2 {
  A_UnknownFunction PF_SetProjectDirty;
  A_UnknownFunction PF_SaveProject;
  A_UnknownFunction PF_SaveBackgroundState;
  A_UnknownFunction PF_ForceForeground;
  A_UnknownFunction PF_RestoreBackgroundState;
  PF_Err (*PF_RefreshAllWindows)(void);
  A_UnknownFunction PF_InfoDrawText;
  A_UnknownFunction PF_InfoDrawColor;
  A_UnknownFunction PF_InfoDrawText3;
  A_UnknownFunction PF_InfoDrawText3Plus;
  A_UnknownFunction PF_AppendInfoText;
} PF_AdvAppSuite2;
