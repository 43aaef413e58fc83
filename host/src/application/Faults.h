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

/// The name of a fault: a dialog throws an exception at a key event.
inline constexpr char kSendEvent[] = "sendEvent";

/// The functions that a session can make fail: all that the host supplies, and `kSendEvent`.
inline constexpr std::array<std::string_view, 53> kFunctionsThatCanFail{
    "AcquireSuite",
    "ReleaseSuite",
    "IsEqual",
    "FreeBlock",
    "AllocateBlock",
    "ReallocateBlock",
    "AEGP_RegisterCommandHook",
    "AEGP_RegisterDeathHook",
    "AEGP_RegisterIdleHook",
    "AEGP_RegisterUpdateMenuHook",
    "AEGP_CheckMarkMenuCommand",
    "AEGP_DisableCommand",
    "AEGP_DoCommand",
    "AEGP_EnableCommand",
    "AEGP_GetUniqueCommand",
    "AEGP_InsertMenuCommand",
    "AEGP_RemoveMenuCommand",
    "AEGP_SetMenuCommandName",
    "AEGP_EndUndoGroup",
    "AEGP_HostIsActivated",
    "AEGP_IsScriptingAvailable",
    "AEGP_ReportInfo",
    "AEGP_ReportInfoUnicode",
    "AEGP_StartUndoGroup",
    "AEGP_UpdateFontList",
    "AEGP_WriteToOSConsole",
    "PF_RefreshAllWindows",
    "AEGP_GetNumProjects",
    "AEGP_GetProjectByIndex",
    "AEGP_GetProjectName",
    "AEGP_GetProjectPath",
    "AEGP_NewProject",
    "AEGP_OpenProjectFromPath",
    "AEGP_ProjectIsDirty",
    "AEGP_FreeMemHandle",
    "AEGP_GetMemHandleSize",
    "AEGP_GetMemStats",
    "AEGP_LockMemHandle",
    "AEGP_NewMemHandle",
    "AEGP_ResizeMemHandle",
    "AEGP_UnlockMemHandle",
    "AEGP_DeleteEntry",
    "AEGP_DoesKeyExist",
    "AEGP_GetApplicationBlob",
    "AEGP_GetFpLong",
    "AEGP_GetLong",
    "AEGP_GetNumKeys",
    "AEGP_GetNumSections",
    "AEGP_GetString",
    "AEGP_SetFpLong",
    "AEGP_SetLong",
    "AEGP_SetString",
    kSendEvent,
};

/// Returns whether `function` is one of them.
constexpr bool CanFail(std::string_view function) {
  return std::find(kFunctionsThatCanFail.begin(), kFunctionsThatCanFail.end(), function) !=
         kFunctionsThatCanFail.end();
}

/// The name of a function that can fail. Another name doesn't compile.
struct FailingFunction {
  // Not explicit, so that callers pass the text.
  consteval FailingFunction(const char* function) : name(function) {
    if (!CanFail(function)) throw "not among kFunctionsThatCanFail";
  }
  std::string_view name;
};

/// The failures that a session asks for.
class Faults {
 public:
  /// Makes all further calls fail.
  static constexpr int64_t kAlways = 0;

  /// Makes the next `times` calls of `function` return `result`. Replaces an earlier request.
  void fail(const std::string& function, A_Err result, int64_t times);
  /// Makes the `call`-th call of `function` from now return `result`, and no other. `call` counts
  /// from 1. Replaces an earlier request of this kind, not one of the other kind.
  void failCall(const std::string& function, A_Err result, int64_t call);
  /// Returns whether a call by its number is still to fail.
  bool waitsForCall() const { return !mFailingCalls.empty(); }
  /// While they rest, every call succeeds. Calls are counted all the same.
  void rest(bool resting) { mResting = resting; }
  /// Makes the host refuse the suite.
  void refuse(const std::string& suite, int32 version) { mRefused.emplace(suite, version); }

  /// Counts a call. Returns the error that it has to return, or 0.
  A_Err take(FailingFunction function);
  /// Returns whether the host has to refuse the suite.
  bool refuses(std::string_view suite, int32 version) const;
  /// Returns the functions that were called less often than they were to fail.
  std::vector<std::string> unmet() const;

 private:
  struct Failure {
    A_Err result = A_Err_NONE;
    int64_t times = 0;
    bool met = false;  ///< by at least one call
  };
  struct FailingCall {
    A_Err result = A_Err_NONE;
    int64_t callsLeft = 0;  ///< until and with the one that fails
  };

  A_Err takeAlways(std::string_view function);
  A_Err takeCall(std::string_view function);

  std::map<std::string, Failure, std::less<>> mFailures;
  std::map<std::string, FailingCall, std::less<>> mFailingCalls;
  bool mResting = false;
  std::set<std::pair<std::string, int32>> mRefused;
};

}  // namespace host
