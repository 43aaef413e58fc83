#pragma once

// Keeps the host's missing fonts dialog from the user, by an override of the application's
// `beginModalSessionForWindow:`. Main thread only.

/// Exchanges the implementation: from then on each modal dialog passes through the override first.
/// A second call does nothing. Never undone.
void SwizzleNSAppBeginModal();

/// Traces whether the application still has the override, if that changed since the last call. Asks
/// the platform only while the trace is on.
void traceModalOverride();

/// Ends the project opening under way: the next missing fonts dialog isn't dismissed.
void projectWasOpened();
