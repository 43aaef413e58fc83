#include <fmt/format.h>

#include "Host.h"
#include "SuiteTables.h"

namespace host {
namespace {

A_Err ReportInfo(AEGP_PluginID, const A_char* text) {
  if (const A_Err fault = Fault("AEGP_ReportInfo")) return fault;
  TheHost().timeline.add(Actor::plugIn, fmt::format("reports to the user: {}", text));
  TheHost().timeline.record.reports.emplace_back(text);
  return A_Err_NONE;
}

A_Err UpdateFontList() {
  if (const A_Err fault = Fault("AEGP_UpdateFontList")) return fault;
  TheHost().updateFontList();
  return A_Err_NONE;
}

A_Err RefreshAllWindows() {
  if (const A_Err fault = Fault("PF_RefreshAllWindows")) return fault;
  TheHost().timeline.add(Actor::plugIn, "has all windows drawn anew");
  return A_Err_NONE;
}

}  // namespace

const AEGP_UtilitySuite3 kUtilitySuite3{
    .AEGP_ReportInfo = ReportInfo,
    NOT_SUPPLIED(AEGP_GetDriverPluginInitFuncVersion),
    NOT_SUPPLIED(AEGP_GetDriverImplementationVersion),
    NOT_SUPPLIED(AEGP_StartQuietErrors),
    NOT_SUPPLIED(AEGP_EndQuietErrors),
    NOT_SUPPLIED(AEGP_StartUndoGroup),
    NOT_SUPPLIED(AEGP_EndUndoGroup),
    NOT_SUPPLIED(AEGP_RegisterWithAEGP),
    NOT_SUPPLIED(AEGP_GetMainHWND),
    NOT_SUPPLIED(AEGP_ShowHideAllFloaters),
    NOT_SUPPLIED(AEGP_PaintPalGetForeColor),
    NOT_SUPPLIED(AEGP_PaintPalGetBackColor),
    NOT_SUPPLIED(AEGP_PaintPalSetForeColor),
    NOT_SUPPLIED(AEGP_PaintPalSetBackColor),
    NOT_SUPPLIED(AEGP_CharPalGetFillColor),
    NOT_SUPPLIED(AEGP_CharPalGetStrokeColor),
    NOT_SUPPLIED(AEGP_CharPalSetFillColor),
    NOT_SUPPLIED(AEGP_CharPalSetStrokeColor),
    NOT_SUPPLIED(AEGP_CharPalIsFillColorUIFrontmost),
    NOT_SUPPLIED(AEGP_ConvertFpLongToHSFRatio),
    NOT_SUPPLIED(AEGP_ConvertHSFRatioToFpLong),
    NOT_SUPPLIED(AEGP_CauseIdleRoutinesToBeCalled),
    NOT_SUPPLIED(AEGP_GetSuppressInteractiveUI),
    NOT_SUPPLIED(AEGP_WriteToOSConsole),
    NOT_SUPPLIED(AEGP_WriteToDebugLog),
};

const AEGP_UtilitySuite6 kUtilitySuite6{
    .AEGP_ReportInfo = ReportInfo,
    NOT_SUPPLIED(AEGP_ReportInfoUnicode),
    NOT_SUPPLIED(AEGP_GetDriverPluginInitFuncVersion),
    NOT_SUPPLIED(AEGP_GetDriverImplementationVersion),
    NOT_SUPPLIED(AEGP_StartQuietErrors),
    NOT_SUPPLIED(AEGP_EndQuietErrors),
    NOT_SUPPLIED(AEGP_GetLastErrorMessage),
    NOT_SUPPLIED(AEGP_StartUndoGroup),
    NOT_SUPPLIED(AEGP_EndUndoGroup),
    NOT_SUPPLIED(AEGP_RegisterWithAEGP),
    NOT_SUPPLIED(AEGP_GetMainHWND),
    NOT_SUPPLIED(AEGP_ShowHideAllFloaters),
    NOT_SUPPLIED(AEGP_PaintPalGetForeColor),
    NOT_SUPPLIED(AEGP_PaintPalGetBackColor),
    NOT_SUPPLIED(AEGP_PaintPalSetForeColor),
    NOT_SUPPLIED(AEGP_PaintPalSetBackColor),
    NOT_SUPPLIED(AEGP_CharPalGetFillColor),
    NOT_SUPPLIED(AEGP_CharPalGetStrokeColor),
    NOT_SUPPLIED(AEGP_CharPalSetFillColor),
    NOT_SUPPLIED(AEGP_CharPalSetStrokeColor),
    NOT_SUPPLIED(AEGP_CharPalIsFillColorUIFrontmost),
    NOT_SUPPLIED(AEGP_ConvertFpLongToHSFRatio),
    NOT_SUPPLIED(AEGP_ConvertHSFRatioToFpLong),
    NOT_SUPPLIED(AEGP_CauseIdleRoutinesToBeCalled),
    NOT_SUPPLIED(AEGP_GetSuppressInteractiveUI),
    NOT_SUPPLIED(AEGP_WriteToOSConsole),
    NOT_SUPPLIED(AEGP_WriteToDebugLog),
    NOT_SUPPLIED(AEGP_IsScriptingAvailable),
    NOT_SUPPLIED(AEGP_ExecuteScript),
    NOT_SUPPLIED(AEGP_HostIsActivated),
    NOT_SUPPLIED(AEGP_GetPluginPlatformRef),
    .AEGP_UpdateFontList = UpdateFontList,
    NOT_SUPPLIED(AEGP_GetPluginPaths),
};

const PF_AdvAppSuite2 kAdvAppSuite2{
    NOT_SUPPLIED(PF_SetProjectDirty),        NOT_SUPPLIED(PF_SaveProject),
    NOT_SUPPLIED(PF_SaveBackgroundState),    NOT_SUPPLIED(PF_ForceForeground),
    NOT_SUPPLIED(PF_RestoreBackgroundState), .PF_RefreshAllWindows = RefreshAllWindows,
    NOT_SUPPLIED(PF_InfoDrawText),           NOT_SUPPLIED(PF_InfoDrawColor),
    NOT_SUPPLIED(PF_InfoDrawText3),          NOT_SUPPLIED(PF_InfoDrawText3Plus),
    NOT_SUPPLIED(PF_AppendInfoText),
};

}  // namespace host
