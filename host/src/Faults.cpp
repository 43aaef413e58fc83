#include "Faults.h"

#include <algorithm>
#include <array>

namespace host {
namespace {

constexpr std::array<std::string_view, 24> kFunctions{
    "AEGP_DoCommand",
    "AEGP_EnableCommand",
    "AEGP_FreeMemHandle",
    "AEGP_GetApplicationBlob",
    "AEGP_GetNumProjects",
    "AEGP_GetProjectByIndex",
    "AEGP_GetProjectPath",
    "AEGP_GetString",
    "AEGP_GetUniqueCommand",
    "AEGP_InsertMenuCommand",
    "AEGP_LockMemHandle",
    "AEGP_NewProject",
    "AEGP_OpenProjectFromPath",
    "AEGP_ProjectIsDirty",
    "AEGP_RegisterCommandHook",
    "AEGP_RegisterDeathHook",
    "AEGP_RegisterIdleHook",
    "AEGP_ReportInfo",
    "AEGP_RegisterUpdateMenuHook",
    "AEGP_SetString",
    "AEGP_UnlockMemHandle",
    "AEGP_UpdateFontList",
    "PF_RefreshAllWindows",
    kSendEvent,
};

}  // namespace

bool CanFail(std::string_view function) {
  return std::find(kFunctions.begin(), kFunctions.end(), function) != kFunctions.end();
}

void Faults::fail(const std::string& function, A_Err result, int64_t times) {
  mFailures[function] = {result, times};
}

A_Err Faults::take(std::string_view function) {
  if (mFailures.empty()) return A_Err_NONE;
  const auto failure = mFailures.find(function);
  if (failure == mFailures.end()) return A_Err_NONE;
  const A_Err result = failure->second.result;
  if (--failure->second.times == 0) mFailures.erase(failure);
  return result;
}

bool Faults::refuses(std::string_view suite, int32 version) const {
  return !mRefused.empty() && mRefused.contains({std::string(suite), version});
}

}  // namespace host
