#pragma once

#include <string>
#include <string_view>

#include "SPBasic.h"

namespace host {

/// The suites of this host.
enum class SuiteId {
  register5,
  command1,
  utility3,
  utility6,
  proj6,
  memory1,
  advApp2,
  persistentData3,
  persistentData4,
  basic,  ///< always there; the last one
};

/// Returns the table for a plug-in's entry point. Its suites act on `TheHost()`.
SPBasicSuite* BasicSuite();

/// Returns the suite's name, without its version.
std::string_view NameOf(SuiteId suite);
/// Returns whether this host has the suite.
bool HasSuite(std::string_view name, int32 version);
/// Does the same for a name such as "AEGP Memory Suite 1".
bool HasSuite(std::string_view nameAndVersion);

/// Returns the table of a suite other than the basic one.
const void* TableOf(SuiteId suite);
/// Returns the name and the version of the suite that has the table.
std::string NameOfTable(const void* table);

}  // namespace host
