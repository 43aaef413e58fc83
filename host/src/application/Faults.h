#pragma once

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "AE_GeneralPlug.h"

namespace host {

/// Stands for a dialog window that raises an exception at an event.
inline constexpr char kSendEvent[] = "sendEvent";

/// The functions that a session can have fail.
inline constexpr std::array<std::string_view, 24> kFunctionsThatCanFail{
    "AEGP_DoCommand",           "AEGP_EnableCommand",    "AEGP_FreeMemHandle",
    "AEGP_GetApplicationBlob",  "AEGP_GetNumProjects",   "AEGP_GetProjectByIndex",
    "AEGP_GetProjectPath",      "AEGP_GetString",        "AEGP_GetUniqueCommand",
    "AEGP_InsertMenuCommand",   "AEGP_LockMemHandle",    "AEGP_NewProject",
    "AEGP_OpenProjectFromPath", "AEGP_ProjectIsDirty",   "AEGP_RegisterCommandHook",
    "AEGP_RegisterDeathHook",   "AEGP_RegisterIdleHook", "AEGP_RegisterUpdateMenuHook",
    "AEGP_ReportInfo",          "AEGP_SetString",        "AEGP_UnlockMemHandle",
    "AEGP_UpdateFontList",      "PF_RefreshAllWindows",  kSendEvent,
};

/// Whether `function` is one of them.
constexpr bool CanFail(std::string_view function) {
  return std::find(kFunctionsThatCanFail.begin(), kFunctionsThatCanFail.end(), function) !=
         kFunctionsThatCanFail.end();
}

/// The name of a function that can fail. Any other one doesn't compile.
struct FailingFunction {
  // Not explicit: calls are to read as if it were the text.
  consteval FailingFunction(const char* function) : name(function) {
    if (!CanFail(function)) throw "not among kFunctionsThatCanFail";
  }
  std::string_view name;
};

/// Failures that a session has asked for.
class Faults {
 public:
  /// For as many calls as come.
  static constexpr int64_t kAlways = 0;

  /// The next `times` calls of `function` report `result`, whatever was asked for it before.
  void fail(const std::string& function, A_Err result, int64_t times);
  /// The host has no such suite from now on.
  void refuse(const std::string& suite, int32 version) { mRefused.emplace(suite, version); }

  /// The result that this call has to report, 0 for none.
  A_Err take(FailingFunction function);
  /// Whether the host has to say that it has no such suite.
  bool refuses(std::string_view suite, int32 version) const;
  /// The functions that were to fail and weren't called, or not as often.
  std::vector<std::string> unmet() const;

 private:
  struct Failure {
    A_Err result = A_Err_NONE;
    int64_t times = 0;
    bool met = false;  ///< by a call at least
  };
  std::map<std::string, Failure, std::less<>> mFailures;
  std::set<std::pair<std::string, int32>> mRefused;
};

}  // namespace host
