#pragma once

#include <string>
#include <string_view>

#include "AE_AdvEffectSuites.h"
#include "AE_GeneralPlug.h"

namespace host {

// The tables that plug-ins get: `kCommandSuite1` is that of `AEGP_CommandSuite1`, in
// CommandSuite.cpp, and so on; `kAdvAppSuite2` is in UtilitySuite.cpp. Their functions act on
// `TheHost()`.
extern const AEGP_RegisterSuite5 kRegisterSuite5;
extern const AEGP_CommandSuite1 kCommandSuite1;
extern const AEGP_UtilitySuite3 kUtilitySuite3;
extern const AEGP_UtilitySuite6 kUtilitySuite6;
extern const AEGP_ProjSuite6 kProjSuite6;
extern const AEGP_MemorySuite1 kMemorySuite1;
extern const PF_AdvAppSuite2 kAdvAppSuite2;
extern const AEGP_PersistentDataSuite3 kPersistentDataSuite3;
extern const AEGP_PersistentDataSuite4 kPersistentDataSuite4;

/// Returns the table for a plug-in's entry point.
SPBasicSuite* BasicSuite();

/// Returns a suite's name with its version, as "AEGP Memory Suite 1".
std::string NameOfSuite(std::string_view name, int32 version);
/// Does the same for the suite that has the table.
std::string NameOfSuite(const void* table);
/// Returns whether this host has the suite of that name with its version.
bool HasSuite(std::string_view nameAndVersion);

}  // namespace host
