#include <fmt/format.h>

#include <filesystem>

#include "SuiteFunction.h"

namespace host {
namespace {

void Report(const std::string& text) {
  TheHost().timeline.add(Actor::plugIn, fmt::format("reports to the user: {}", text));
  TheHost().report(Finding::userReport,
                   "the user saw a report that no step expects: " + EscapeControls(text),
                   {{}, {}, text});
}

A_Err ReportInfo(AEGP_PluginID, const A_char* text) {
  Report(text);
  return A_Err_NONE;
}

A_Err ReportInfoUnicode(AEGP_PluginID, const A_UTF16Char* text) {
  const std::optional<std::string> utf8 = ToUTF8(text);
  if (!utf8) {
    return SuiteCall::current().misused(Finding::badArgument, "info_stringP isn't UTF-16");
  }
  Report(*utf8);
  return A_Err_NONE;
}

A_Err StartUndoGroup(const A_char* name) {
  ++TheHost().undoGroups;
  TheHost().timeline.add(Actor::plugIn, fmt::format("starts the undo group \"{}\"", name));
  return A_Err_NONE;
}

A_Err EndUndoGroup() {
  if (TheHost().undoGroups == 0) {
    return SuiteCall::current().misused(Finding::unbalancedUndoGroup, "no undo group was started");
  }
  --TheHost().undoGroups;
  TheHost().timeline.add(Actor::plugIn, "ends an undo group");
  return A_Err_NONE;
}

A_Err WriteToOSConsole(const A_char* text) {
  TheHost().timeline.add(Actor::plugIn, fmt::format("writes to the system's console: {}", text));
  return A_Err_NONE;
}

A_Err IsScriptingAvailable(A_Boolean* available) {
  *available = 0;
  return A_Err_NONE;
}

A_Err HostIsActivated(A_Boolean* activated) {
  *activated = TheHost().frontApplication() == kHostApplication ? 1 : 0;
  return A_Err_NONE;
}

A_Err UpdateFontList() {
  TheHost().updateFontList();
  return A_Err_NONE;
}

A_Err RefreshAllWindows() {
  TheHost().timeline.add(Actor::plugIn, "has all windows drawn again");
  return A_Err_NONE;
}

using EndUndo = Body<EndUndoGroup, Order::workFirst>;

}  // namespace

const AEGP_UtilitySuite3 kUtilitySuite3{
    SUPPLIED(utility3, AEGP_ReportInfo, Body<ReportInfo>, "aegp_plugin_id", "info_stringZ"),
    NOT_SUPPLIED(utility3, AEGP_GetDriverPluginInitFuncVersion),
    NOT_SUPPLIED(utility3, AEGP_GetDriverImplementationVersion),
    NOT_SUPPLIED(utility3, AEGP_StartQuietErrors),
    NOT_SUPPLIED(utility3, AEGP_EndQuietErrors),
    SUPPLIED(utility3, AEGP_StartUndoGroup, Body<StartUndoGroup>, "undo_nameZ"),
    SUPPLIED(utility3, AEGP_EndUndoGroup, EndUndo),
    NOT_SUPPLIED(utility3, AEGP_RegisterWithAEGP),
    NOT_SUPPLIED(utility3, AEGP_GetMainHWND),
    NOT_SUPPLIED(utility3, AEGP_ShowHideAllFloaters),
    NOT_SUPPLIED(utility3, AEGP_PaintPalGetForeColor),
    NOT_SUPPLIED(utility3, AEGP_PaintPalGetBackColor),
    NOT_SUPPLIED(utility3, AEGP_PaintPalSetForeColor),
    NOT_SUPPLIED(utility3, AEGP_PaintPalSetBackColor),
    NOT_SUPPLIED(utility3, AEGP_CharPalGetFillColor),
    NOT_SUPPLIED(utility3, AEGP_CharPalGetStrokeColor),
    NOT_SUPPLIED(utility3, AEGP_CharPalSetFillColor),
    NOT_SUPPLIED(utility3, AEGP_CharPalSetStrokeColor),
    NOT_SUPPLIED(utility3, AEGP_CharPalIsFillColorUIFrontmost),
    NOT_SUPPLIED(utility3, AEGP_ConvertFpLongToHSFRatio),
    NOT_SUPPLIED(utility3, AEGP_ConvertHSFRatioToFpLong),
    NOT_SUPPLIED(utility3, AEGP_CauseIdleRoutinesToBeCalled),
    NOT_SUPPLIED(utility3, AEGP_GetSuppressInteractiveUI),
    SUPPLIED(utility3, AEGP_WriteToOSConsole, Body<WriteToOSConsole>, "textZ"),
    NOT_SUPPLIED(utility3, AEGP_WriteToDebugLog),
};

const AEGP_UtilitySuite6 kUtilitySuite6{
    SUPPLIED(utility6, AEGP_ReportInfo, Body<ReportInfo>, "aegp_plugin_id", "info_stringZ"),
    SUPPLIED(utility6, AEGP_ReportInfoUnicode, Body<ReportInfoUnicode>, "aegp_plugin_id",
             "info_stringP"),
    NOT_SUPPLIED(utility6, AEGP_GetDriverPluginInitFuncVersion),
    NOT_SUPPLIED(utility6, AEGP_GetDriverImplementationVersion),
    NOT_SUPPLIED(utility6, AEGP_StartQuietErrors),
    NOT_SUPPLIED(utility6, AEGP_EndQuietErrors),
    NOT_SUPPLIED(utility6, AEGP_GetLastErrorMessage),
    SUPPLIED(utility6, AEGP_StartUndoGroup, Body<StartUndoGroup>, "undo_nameZ"),
    SUPPLIED(utility6, AEGP_EndUndoGroup, EndUndo),
    NOT_SUPPLIED(utility6, AEGP_RegisterWithAEGP),
    NOT_SUPPLIED(utility6, AEGP_GetMainHWND),
    NOT_SUPPLIED(utility6, AEGP_ShowHideAllFloaters),
    NOT_SUPPLIED(utility6, AEGP_PaintPalGetForeColor),
    NOT_SUPPLIED(utility6, AEGP_PaintPalGetBackColor),
    NOT_SUPPLIED(utility6, AEGP_PaintPalSetForeColor),
    NOT_SUPPLIED(utility6, AEGP_PaintPalSetBackColor),
    NOT_SUPPLIED(utility6, AEGP_CharPalGetFillColor),
    NOT_SUPPLIED(utility6, AEGP_CharPalGetStrokeColor),
    NOT_SUPPLIED(utility6, AEGP_CharPalSetFillColor),
    NOT_SUPPLIED(utility6, AEGP_CharPalSetStrokeColor),
    NOT_SUPPLIED(utility6, AEGP_CharPalIsFillColorUIFrontmost),
    NOT_SUPPLIED(utility6, AEGP_ConvertFpLongToHSFRatio),
    NOT_SUPPLIED(utility6, AEGP_ConvertHSFRatioToFpLong),
    NOT_SUPPLIED(utility6, AEGP_CauseIdleRoutinesToBeCalled),
    NOT_SUPPLIED(utility6, AEGP_GetSuppressInteractiveUI),
    SUPPLIED(utility6, AEGP_WriteToOSConsole, Body<WriteToOSConsole>, "textZ"),
    NOT_SUPPLIED(utility6, AEGP_WriteToDebugLog),
    SUPPLIED(utility6, AEGP_IsScriptingAvailable, Body<IsScriptingAvailable>, "outAvailablePB"),
    NOT_SUPPLIED(utility6, AEGP_ExecuteScript),
    SUPPLIED(utility6, AEGP_HostIsActivated, Body<HostIsActivated>, "is_activatedPB"),
    NOT_SUPPLIED(utility6, AEGP_GetPluginPlatformRef),
    SUPPLIED(utility6, AEGP_UpdateFontList, Body<UpdateFontList>),
    NOT_SUPPLIED(utility6, AEGP_GetPluginPaths),
};

const PF_AdvAppSuite2 kAdvAppSuite2{
    NOT_SUPPLIED(advApp2, PF_SetProjectDirty),
    NOT_SUPPLIED(advApp2, PF_SaveProject),
    NOT_SUPPLIED(advApp2, PF_SaveBackgroundState),
    NOT_SUPPLIED(advApp2, PF_ForceForeground),
    NOT_SUPPLIED(advApp2, PF_RestoreBackgroundState),
    SUPPLIED(advApp2, PF_RefreshAllWindows, Body<RefreshAllWindows>),
    NOT_SUPPLIED(advApp2, PF_InfoDrawText),
    NOT_SUPPLIED(advApp2, PF_InfoDrawColor),
    NOT_SUPPLIED(advApp2, PF_InfoDrawText3),
    NOT_SUPPLIED(advApp2, PF_InfoDrawText3Plus),
    NOT_SUPPLIED(advApp2, PF_AppendInfoText),
};

}  // namespace host
