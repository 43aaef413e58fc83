#pragma once

/// Tells a tick's caller what the tick did: it sets the flag that is named after a call when it
/// makes the call. It never clears one.
struct TBKCallTracker {
  bool backgroundForegroundAppCalled = false;
  bool handleCreateNewDocumentCalled = false;
  bool handleCloseDocumentCalled = false;
  bool handleOpenExistingDocumentCalled = false;
  bool handleSaveDocumentCalled = false;
  bool invokeResolveDialogCalled = false;
  bool invokeRestrictedFontsDialogCalled = false;
  bool openProjectCalled = false;
  bool setPathForDocumentCalled = false;
  bool startFontActivationProcessCalled = false;
};
