#pragma once

#include "AE_GeneralPlug.h"

/// The host as cheap as it can be: one clean project whose file exists, with a path of 100
/// characters, and memory handles that cost nothing.
namespace bench_host {

/// Ready to be given to the plug-in. Static.
SPBasicSuite* BasicSuite();

/// How many suites have been acquired so far.
extern int64_t suites_acquired;

/// The path of the project's file, UTF-8.
const char* ProjectPath();

}  // namespace bench_host
