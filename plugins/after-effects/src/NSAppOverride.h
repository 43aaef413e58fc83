#pragma once

// Keeps the host's missing fonts dialog from the user: every modal dialog of the process passes
// through an override of the application's `beginModalSessionForWindow:`. Main thread only.

/// Exchanges the implementation, so that from now on each modal dialog passes through the override.
/// To be called once; never undone.
void SwizzleNSAppBeginModal();

/// The project opening under way is over: no missing fonts dialog is expected any more.
void projectWasOpened();
