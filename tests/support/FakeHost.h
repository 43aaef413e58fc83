#pragma once

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "AE_GeneralPlug.h"

/// The host's suites as a unit test sees them: every call is written down, and any can be made to
/// fail. One for the process, because suite functions are plain functions.
struct FakeHost {
  /// Calls in order: suite functions with what matters of their arguments, suites as "+NAME
  /// VERSION" when they are acquired and "-NAME VERSION" when they are released.
  std::vector<std::string> calls;
  /// The error that a function reports, without doing anything, by its name.
  std::map<std::string, A_Err> failures;
  std::set<std::pair<std::string, int>> refusedSuites;

  bool hasProject = true;
  std::u16string path;
  bool dirty = false;
  std::u16string openedPath;
  std::map<std::string, std::string> preferences;

  AEGP_IdleHook idleHook = nullptr;
  AEGP_CommandHook commandHook = nullptr;
  AEGP_UpdateMenuHook updateMenuHook = nullptr;
  AEGP_DeathHook deathHook = nullptr;

  /// Writes the call down and returns the error that it is to report.
  A_Err Call(const std::string& function, const std::string& arguments = "");
  /// The calls since the last time, without the suites.
  std::vector<std::string> TakeCalls();
  SPBasicSuite* basicSuite();
};

/// Never destroyed: the plug-in releases its suites at process exit.
extern FakeHost& fake_host;
