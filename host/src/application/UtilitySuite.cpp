#include <fmt/format.h>

#include "SuiteFunction.h"
#include "TextFile.h"

namespace host {
namespace {

void ReportInfo(Host& host, AEGP_PluginID, const A_char* text) {
  host.timeline.add(Actor::plugIn, fmt::format("reports to the user: {}", text));
  host.report(Finding::userReport,
              fmt::format("the user saw a report that no step expects: {}", EscapeControls(text)),
              {{}, {}, text});
}

A_Err ReportInfoUnicode(Host& host, AEGP_PluginID id, const A_UTF16Char* text) {
  const std::optional<std::string> utf8 = ToUTF8(text);
  if (!utf8) return host.misused(Finding::badArgument, "info_stringP isn't UTF-16");
  ReportInfo(host, id, utf8->c_str());
  return A_Err_NONE;
}

void StartUndoGroup(Host& host, const A_char* name) {
  ++host.undoGroups;
  host.timeline.add(Actor::plugIn, fmt::format("starts the undo group \"{}\"", name));
}

A_Err EndUndoGroup(Host& host) {
  if (host.undoGroups == 0) {
    return host.misused(Finding::unbalancedUndoGroup, "no undo group was started");
  }
  --host.undoGroups;
  host.timeline.add(Actor::plugIn, "ends an undo group");
  return A_Err_NONE;
}

void WriteToOSConsole(Host& host, const A_char* text) {
  host.timeline.add(Actor::plugIn, fmt::format("writes to the system's console: {}", text));
}

void WriteToDebugLog(Host& host, const A_char* subsystem, const A_char* eventType,
                     const A_char* info) {
  host.timeline.add(Actor::plugIn,
                    fmt::format("writes to the debug log: {}, {}: {}", subsystem, eventType, info));
}

// The session decides when there is a tick.
void CauseIdleRoutinesToBeCalled(Host& host) {
  host.timeline.add(Actor::plugIn, "asks for an idle tick soon");
}

void IsScriptingAvailable(Host& /*host*/, A_Boolean* available) {
  *available = 0;
}

void HostIsActivated(Host& host, A_Boolean* activated) {
  *activated = host.frontApplication() == kHostApplication ? 1 : 0;
}

void UpdateFontList(Host& host) {
  host.updateFontList();
}

void RefreshAllWindows(Host& host) {
  host.timeline.add(Actor::plugIn, "has all windows drawn again");
}

}  // namespace

// The functions that both versions of the utility suite have one after the other.
#define DRIVER_AND_ERRORS(table)                                                                \
  NOT_SUPPLIED(table, AEGP_GetDriverPluginInitFuncVersion, AEGP_GetDriverImplementationVersion, \
               AEGP_StartQuietErrors, AEGP_EndQuietErrors)
#define UNDO_TO_DEBUG_LOG(table)                                                                   \
  SUPPLIED(table, AEGP_StartUndoGroup, StartUndoGroup, "undo_nameZ"),                              \
      GIVES_BACK(table, AEGP_EndUndoGroup, EndUndoGroup),                                          \
      NOT_SUPPLIED(table, AEGP_RegisterWithAEGP, AEGP_GetMainHWND, AEGP_ShowHideAllFloaters,       \
                   AEGP_PaintPalGetForeColor, AEGP_PaintPalGetBackColor,                           \
                   AEGP_PaintPalSetForeColor, AEGP_PaintPalSetBackColor, AEGP_CharPalGetFillColor, \
                   AEGP_CharPalGetStrokeColor, AEGP_CharPalSetFillColor,                           \
                   AEGP_CharPalSetStrokeColor, AEGP_CharPalIsFillColorUIFrontmost,                 \
                   AEGP_ConvertFpLongToHSFRatio, AEGP_ConvertHSFRatioToFpLong),                    \
      SUPPLIED(table, AEGP_CauseIdleRoutinesToBeCalled, CauseIdleRoutinesToBeCalled),              \
      NOT_SUPPLIED(table, AEGP_GetSuppressInteractiveUI),                                          \
      SUPPLIED(table, AEGP_WriteToOSConsole, WriteToOSConsole, "textZ"),                           \
      SUPPLIED(table, AEGP_WriteToDebugLog, WriteToDebugLog, "subsystemZ", "event_typeZ", "infoZ")

const AEGP_UtilitySuite3 kUtilitySuite3{
    SUPPLIED(kUtilitySuite3, AEGP_ReportInfo, ReportInfo, "aegp_plugin_id", "info_stringZ"),
    DRIVER_AND_ERRORS(kUtilitySuite3),
    UNDO_TO_DEBUG_LOG(kUtilitySuite3),
};

const AEGP_UtilitySuite6 kUtilitySuite6{
    SUPPLIED(kUtilitySuite6, AEGP_ReportInfo, ReportInfo, "aegp_plugin_id", "info_stringZ"),
    SUPPLIED(kUtilitySuite6, AEGP_ReportInfoUnicode, ReportInfoUnicode, "aegp_plugin_id",
             "info_stringP"),
    DRIVER_AND_ERRORS(kUtilitySuite6),
    NOT_SUPPLIED(kUtilitySuite6, AEGP_GetLastErrorMessage),
    UNDO_TO_DEBUG_LOG(kUtilitySuite6),
    SUPPLIED(kUtilitySuite6, AEGP_IsScriptingAvailable, IsScriptingAvailable, "outAvailablePB"),
    NOT_SUPPLIED(kUtilitySuite6, AEGP_ExecuteScript),
    SUPPLIED(kUtilitySuite6, AEGP_HostIsActivated, HostIsActivated, "is_activatedPB"),
    NOT_SUPPLIED(kUtilitySuite6, AEGP_GetPluginPlatformRef),
    SUPPLIED(kUtilitySuite6, AEGP_UpdateFontList, UpdateFontList),
    NOT_SUPPLIED(kUtilitySuite6, AEGP_GetPluginPaths),
};

const PF_AdvAppSuite2 kAdvAppSuite2{
    NOT_SUPPLIED(kAdvAppSuite2, PF_SetProjectDirty, PF_SaveProject, PF_SaveBackgroundState,
                 PF_ForceForeground, PF_RestoreBackgroundState),
    SUPPLIED(kAdvAppSuite2, PF_RefreshAllWindows, RefreshAllWindows),
    NOT_SUPPLIED(kAdvAppSuite2, PF_InfoDrawText, PF_InfoDrawColor, PF_InfoDrawText3,
                 PF_InfoDrawText3Plus, PF_AppendInfoText),
};

}  // namespace host
