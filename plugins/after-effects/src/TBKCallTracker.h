#pragma once

/// What one tick did, for whoever runs the tick and wants to know. A flag says that the call which
/// it is named after was made. Flags are only ever set; the caller passes them in as false.
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
