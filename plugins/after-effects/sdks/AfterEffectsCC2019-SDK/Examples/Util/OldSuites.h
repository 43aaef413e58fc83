#pragma once

#include "AE_GeneralPlug.h"

/// Old suites that the host still hands out. An SDK may declare them in another header, under
/// another name, or not at all, so these tables have names of ours. They name only the functions
/// that the plug-in calls. Contracts are as in the host's headers.

/// A function that nothing here calls. It keeps its place in the table.
using OldSuiteFunction = void (*)();

/// "AEGP Utility Suite", version 7
struct UtilitySuiteVersion7 {
  A_Err (*AEGP_ReportInfo)(AEGP_PluginID aegp_plugin_id, const A_char* info_stringZ);
};

/// "AEGP Persistent Data Suite", version 3
struct PersistentDataSuiteVersion3 {
  A_Err (*AEGP_GetApplicationBlob)(AEGP_PersistentBlobH* blobPH);
  OldSuiteFunction notCalled[12];
  A_Err (*AEGP_SetString)(AEGP_PersistentBlobH blobPH, const A_char* section_keyZ,
                          const A_char* value_keyZ, const A_char* strZ);
};
