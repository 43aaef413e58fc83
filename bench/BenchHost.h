#pragma once

#include "AE_GeneralPlug.h"

/// The cheapest possible host: one clean project whose file exists, and memory handles that cost
/// nothing.
namespace bench_host {

/// Returns the suites that the plug-in gets. Static.
SPBasicSuite* BasicSuite();

/// The number of suites that have been acquired.
extern int64_t suites_acquired;

/// Chooses the project's path: 40 characters, most of them Japanese, or 100 ASCII characters, the
/// default.
void UseJapanesePath(bool use);

/// Returns the path of the project's file, UTF-8.
const char* ProjectPath();

}  // namespace bench_host
