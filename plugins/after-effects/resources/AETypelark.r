/* What the host reads before it loads the plug-in: its kind, its name, and the function to call on each architecture. The
   types come from the host maker's SDK. */

#include "AEConfig.h"
#include "AE_General.r"

resource 'PiPL' (16000) {
  {
    Kind { AEGP },
    Name { "Typelark" },
    Category { "General Plugin" },
    /* 16.0 */
    Version { 0x00100000 },
    CodeMacIntel64 { "EntryPointFunc" },
    CodeMacARM64 { "EntryPointFunc" }
  }
};
