#pragma once

#include <cstdint>

/// The framework's exports, as its callers use them. For one thread. Texts are NUL-terminated
/// UTF-8, lists hold one font a line, buffers are the caller's. Each call adds a line to the
/// session's journal and returns a code of `ErrorCodes.h`, or what the session answers instead.
///
/// A `size` is the buffer's and isn't changed. Without one, a list has 131,072 bytes, an identifier
/// 256 and a reply 32,767. A text that doesn't fit leaves the buffer empty and returns
/// `kIndexOutOfRange`.
///
/// No exception leaves an export. An unusable session folder ends the process.
extern "C" {
#pragma GCC visibility push(default)

/// Activates the listed fonts that the vault allows, and counts those that weren't active before.
/// Returns `kNotFound` if a listed font stays inactive.
uint32_t ActivateChosenFonts(const char* path, char* list, int32_t* count) noexcept;

/// Writes the identifier of the document at the path. Writes an empty text and returns `kNotFound`
/// if it is unknown.
uint32_t GetIDForDocument(const char* path, char* id, uint64_t* size) noexcept;

/// Forgets the document at the path. Returns `kNotFound` if it is unknown. Ignores the identifier.
uint32_t HandleCloseDocument(const char* path, char* id) noexcept;

/// Makes a document without a path and writes its identifier.
uint32_t HandleCreateNewDocument(char* id, uint64_t* size) noexcept;

/// Reads which fonts the project at the path uses, activates the automatic ones and counts them.
/// Lists the restricted ones and returns `kAlreadyInitialized`. Without any, lists the ones to
/// choose from and returns `kSuccess`. Returns `kOpenFailed` if the project can't be read.
/// Activates nothing if it fails.
uint32_t HandleOpenExistingDocument(const char* path, char* list, uint64_t* size,
                                    int32_t* count) noexcept;

/// Returns `kNotFound` if the document at the path is unknown. Ignores the identifier.
uint32_t HandleSaveDocument(const char* path, char* id) noexcept;

/// Introduces a client, before its other calls.
uint32_t InitializeTamberlinkInterface(const char* bundleId, const char* version) noexcept;

/// Runs the command dialog, where the session decides about `start`. Leaves the reply empty.
uint32_t InvokeCommandDialog(const char* id, char* reply, bool* start) noexcept;

/// Offers the listed fonts and leaves those that the session picks, in the same order: none if the
/// user cancels.
uint32_t InvokeResolveDialog(char* list, uint64_t* size) noexcept;

/// Shows the listed fonts.
uint32_t InvokeRestrictedFontsDialog(const char* path, char* list) noexcept;

/// Writes whether the plug-in is enabled, by the session's state.
uint32_t PluginIsEnabled(bool showMessage, bool* enabled) noexcept;

/// Sets the path of the document of that identifier. Returns `kNotFound` if it is unknown.
uint32_t SetPathForDocument(const char* path, const char* id) noexcept;

/// Ends a client's connection. The last call.
uint32_t TerminateTamberlinkInterface() noexcept;

/// Tells the user to log in.
uint32_t ShowNotLoggedInMessageBox() noexcept;

/// Writes whether to tell the user so, by the session's state.
uint32_t ShouldShowLogin(bool* show) noexcept;

/// Nobody calls these, so their signatures are open.
void CreateMenusFromJSONBuffer() noexcept;
void GetAPIVersion() noexcept;
void GetMenus() noexcept;
void GetSettings() noexcept;
void GetSocketPort() noexcept;
void HandleMenuSelection() noexcept;
void IdleEvent() noexcept;
void ProcessPanelMessages() noexcept;
void RegisterPlugPlug() noexcept;
void UpdateDocumentFontUsage() noexcept;
void SetRebuildWorkgroupsMenuCallback() noexcept;

#pragma GCC visibility pop
}
