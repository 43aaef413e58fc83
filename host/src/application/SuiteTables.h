#pragma once

#include "AE_AdvEffectSuites.h"
#include "AE_GeneralPlug.h"

// The tables that plug-ins get. Their functions act on `TheHost()`.

namespace host {

extern const AEGP_RegisterSuite5 kRegisterSuite5;
extern const AEGP_CommandSuite1 kCommandSuite1;
extern const AEGP_UtilitySuite3 kUtilitySuite3;
extern const AEGP_UtilitySuite6 kUtilitySuite6;
extern const AEGP_ProjSuite6 kProjSuite6;
extern const AEGP_MemorySuite1 kMemorySuite1;
extern const PF_AdvAppSuite2 kAdvAppSuite2;
extern const AEGP_PersistentDataSuite3 kPersistentDataSuite3;
extern const AEGP_PersistentDataSuite4 kPersistentDataSuite4;

}  // namespace host
