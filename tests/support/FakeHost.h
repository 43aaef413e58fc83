#pragma once

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "AE_GeneralPlug.h"

/// Supplies the host's suites to unit tests: records every call, and makes any function fail. One
/// for the process, because suite functions are plain functions.
struct FakeHost {
  /// The calls in order: a suite function with some of its arguments, as
  /// "AEGP_DoCommand(2372)"; an acquisition as "+AEGP Proj Suite 9"; a release as "-AEGP Proj
  /// Suite 9".
  std::vector<std::string> calls;
  /// The error of each function that fails, by its name. The function does nothing else.
  std::map<std::string, A_Err> failures;
  std::set<std::pair<std::string, int>> refusedSuites;

  bool hasProject = true;
  std::u16string path;
  bool dirty = false;
  std::u16string openedPath;
  std::map<std::string, std::string> preferences;

  AEGP_IdleHook idleHook = nullptr;
  AEGP_CommandHook commandHook = nullptr;

  /// Records the call. Returns the error of the function, or 0.
  A_Err Call(const std::string& function, const std::string& arguments = "");
  /// Returns and removes the recorded calls, without those about suites.
  std::vector<std::string> TakeCalls();
  SPBasicSuite* basicSuite();
};

/// Never destroyed: the plug-in releases its suites at process exit.
extern FakeHost& fake_host;
