#include <fmt/format.h>

#include <filesystem>

#include "Host.h"
#include "HostCall.h"
#include "SuiteTables.h"
#include "TextFile.h"

namespace host {
namespace {

void Report(const std::string& text) {
  TheHost().timeline.add(Actor::plugIn, fmt::format("reports to the user: {}", text));
  // What a failing call has caused the user to see.
  if (TheHost().settings().tolerant && TheHost().hasAnsweredError()) return;
  TheHost().timeline.record.reports.push_back(
      {EscapeControls(text), TheHost().where(), TheHost().timeline.head(Actor::plugIn)});
}

template <SuiteId suite>
A_Err ReportInfo(AEGP_PluginID id, const A_char* text) {
  HostCall call(suite, "AEGP_ReportInfo", int64_t{id}, text);
  call.needsPluginId(id);
  call.needs(text, "info_stringZ");
  if (const A_Err error = call.error()) return error;
  Report(text);
  return A_Err_NONE;
}

A_Err ReportInfoUnicode(AEGP_PluginID id, const A_UTF16Char* text) {
  HostCall call(SuiteId::utility6, "AEGP_ReportInfoUnicode", int64_t{id}, text);
  call.needsPluginId(id);
  call.needs(text, "info_stringP");
  if (const A_Err error = call.error()) return error;
  const std::optional<std::string> utf8 = ToUTF8(text);
  if (!utf8) {
    call.misused(Finding::badArgument, "info_stringP isn't UTF-16");
    return call.misuse();
  }
  Report(*utf8);
  return A_Err_NONE;
}

template <SuiteId suite>
A_Err StartUndoGroup(const A_char* name) {
  HostCall call(suite, "AEGP_StartUndoGroup", name);
  call.needs(name, "undo_nameZ");
  if (const A_Err error = call.error()) return error;
  ++TheHost().undoGroups;
  TheHost().timeline.add(Actor::plugIn, fmt::format("starts the undo group \"{}\"", name));
  return A_Err_NONE;
}

// Does its work before it fails for the session, so that a group that is left is the plug-in's.
template <SuiteId suite>
A_Err EndUndoGroup() {
  HostCall call(suite, "AEGP_EndUndoGroup");
  if (call.misuse() != A_Err_NONE) return call.misuse();
  if (TheHost().undoGroups == 0) {
    call.misused(Finding::unbalancedUndoGroup, "no undo group was started");
    return call.misuse();
  }
  --TheHost().undoGroups;
  TheHost().timeline.add(Actor::plugIn, "ends an undo group");
  return call.error();
}

template <SuiteId suite>
A_Err WriteToOSConsole(const A_char* text) {
  HostCall call(suite, "AEGP_WriteToOSConsole", text);
  call.needs(text, "textZ");
  if (const A_Err error = call.error()) return error;
  TheHost().timeline.add(Actor::plugIn, fmt::format("writes to the system's console: {}", text));
  return A_Err_NONE;
}

A_Err IsScriptingAvailable(A_Boolean* available) {
  HostCall call(SuiteId::utility6, "AEGP_IsScriptingAvailable", available);
  call.needs(available, "outAvailablePB");
  if (const A_Err error = call.error()) return error;
  *available = 0;
  return A_Err_NONE;
}

A_Err HostIsActivated(A_Boolean* activated) {
  HostCall call(SuiteId::utility6, "AEGP_HostIsActivated", activated);
  call.needs(activated, "is_activatedPB");
  if (const A_Err error = call.error()) return error;
  *activated = TheHost().frontApplication() == kHostApplication ? 1 : 0;
  return A_Err_NONE;
}

A_Err UpdateFontList() {
  HostCall call(SuiteId::utility6, "AEGP_UpdateFontList");
  if (const A_Err error = call.error()) return error;
  TheHost().updateFontList();
  return A_Err_NONE;
}

A_Err RefreshAllWindows() {
  HostCall call(SuiteId::advApp2, "PF_RefreshAllWindows");
  if (const A_Err error = call.error()) return error;
  TheHost().timeline.add(Actor::plugIn, "has all windows drawn again");
  return A_Err_NONE;
}

}  // namespace

const AEGP_UtilitySuite3 kUtilitySuite3{
    .AEGP_ReportInfo = ReportInfo<SuiteId::utility3>,
    NOT_SUPPLIED(utility3, AEGP_GetDriverPluginInitFuncVersion),
    NOT_SUPPLIED(utility3, AEGP_GetDriverImplementationVersion),
    NOT_SUPPLIED(utility3, AEGP_StartQuietErrors),
    NOT_SUPPLIED(utility3, AEGP_EndQuietErrors),
    .AEGP_StartUndoGroup = StartUndoGroup<SuiteId::utility3>,
    .AEGP_EndUndoGroup = EndUndoGroup<SuiteId::utility3>,
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
    .AEGP_WriteToOSConsole = WriteToOSConsole<SuiteId::utility3>,
    NOT_SUPPLIED(utility3, AEGP_WriteToDebugLog),
};

const AEGP_UtilitySuite6 kUtilitySuite6{
    .AEGP_ReportInfo = ReportInfo<SuiteId::utility6>,
    .AEGP_ReportInfoUnicode = ReportInfoUnicode,
    NOT_SUPPLIED(utility6, AEGP_GetDriverPluginInitFuncVersion),
    NOT_SUPPLIED(utility6, AEGP_GetDriverImplementationVersion),
    NOT_SUPPLIED(utility6, AEGP_StartQuietErrors),
    NOT_SUPPLIED(utility6, AEGP_EndQuietErrors),
    NOT_SUPPLIED(utility6, AEGP_GetLastErrorMessage),
    .AEGP_StartUndoGroup = StartUndoGroup<SuiteId::utility6>,
    .AEGP_EndUndoGroup = EndUndoGroup<SuiteId::utility6>,
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
    .AEGP_WriteToOSConsole = WriteToOSConsole<SuiteId::utility6>,
    NOT_SUPPLIED(utility6, AEGP_WriteToDebugLog),
    .AEGP_IsScriptingAvailable = IsScriptingAvailable,
    NOT_SUPPLIED(utility6, AEGP_ExecuteScript),
    .AEGP_HostIsActivated = HostIsActivated,
    NOT_SUPPLIED(utility6, AEGP_GetPluginPlatformRef),
    .AEGP_UpdateFontList = UpdateFontList,
    NOT_SUPPLIED(utility6, AEGP_GetPluginPaths),
};

const PF_AdvAppSuite2 kAdvAppSuite2{
    NOT_SUPPLIED(advApp2, PF_SetProjectDirty),        NOT_SUPPLIED(advApp2, PF_SaveProject),
    NOT_SUPPLIED(advApp2, PF_SaveBackgroundState),    NOT_SUPPLIED(advApp2, PF_ForceForeground),
    NOT_SUPPLIED(advApp2, PF_RestoreBackgroundState), .PF_RefreshAllWindows = RefreshAllWindows,
    NOT_SUPPLIED(advApp2, PF_InfoDrawText),           NOT_SUPPLIED(advApp2, PF_InfoDrawColor),
    NOT_SUPPLIED(advApp2, PF_InfoDrawText3),          NOT_SUPPLIED(advApp2, PF_InfoDrawText3Plus),
    NOT_SUPPLIED(advApp2, PF_AppendInfoText),
};

}  // namespace host
