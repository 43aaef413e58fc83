#pragma once

#include <cstdint>

/// The exports of the framework, with the signatures that its callers use. All calls come from one
/// thread. Texts are UTF-8 and end with NUL, lists hold one font a line, and every buffer is the
/// caller's. The result is a code of `ErrorCodes.h` or what the session answers instead. Each call
/// adds a line to the session's journal.
///
/// Where a `size` passes it is the buffer's, and it stays as it is; without one a list has 131,072
/// bytes, an identifier 256 and a reply 32,767. A text that doesn't fit gives `kIndexOutOfRange`
/// and an empty buffer.
///
/// No exception leaves an export: a session folder that can't be used ends the process.
extern "C" {
#pragma GCC visibility push(default)

/// Activates those fonts of the list that the vault allows to, and counts the ones that weren't
/// active before. `kNotFound` if a font of the list isn't to be had.
uint32_t ActivateChosenFonts(const char* path, char* list, int32_t* count) noexcept;

/// The identifier of the document at the path. `kNotFound` and an empty text if the framework
/// doesn't know it.
uint32_t GetIDForDocument(const char* path, char* id, uint64_t* size) noexcept;

/// Forgets the document at the path. `kNotFound` if there is none. The identifier isn't looked at.
uint32_t HandleCloseDocument(const char* path, char* id) noexcept;

/// Gives the identifier of a new document, which has no path yet.
uint32_t HandleCreateNewDocument(char* id, uint64_t* size) noexcept;

/// Reads which fonts the project at the path uses, activates those that need no asking and counts
/// them. The list becomes the restricted ones with `kAlreadyInitialized`; where there are none the
/// ones to choose from, with `kSuccess`. `kOpenFailed` if the project can't be read. A failure
/// activates nothing.
uint32_t HandleOpenExistingDocument(const char* path, char* list, uint64_t* size,
                                    int32_t* count) noexcept;

/// `kNotFound` if there is no document at the path. The identifier isn't looked at.
uint32_t HandleSaveDocument(const char* path, char* id) noexcept;

/// A client says who it is, before its other calls.
uint32_t InitializeTamberlinkInterface(const char* bundleId, const char* version) noexcept;

/// Opens the command dialog, in which the session decides whether the caller is asked to start. The
/// reply is empty.
uint32_t InvokeCommandDialog(const char* id, char* reply, bool* start) noexcept;

/// Offers the list's fonts and leaves those that the session picks, in the list's order: none if
/// the user cancels.
uint32_t InvokeResolveDialog(char* list, uint64_t* size) noexcept;

/// Shows the list's fonts.
uint32_t InvokeRestrictedFontsDialog(const char* path, char* list) noexcept;

/// Whether the font manager takes the plug-in's calls, by the session's state.
uint32_t PluginIsEnabled(bool showMessage, bool* enabled) noexcept;

/// Gives the document of that identifier its path. `kNotFound` if there is no such document.
uint32_t SetPathForDocument(const char* path, const char* id) noexcept;

/// The client makes no further calls.
uint32_t TerminateTamberlinkInterface() noexcept;

/// Tells the user to log in.
uint32_t ShowNotLoggedInMessageBox() noexcept;

/// Whether the user has to be told to log in, by the session's state.
uint32_t ShouldShowLogin(bool* show) noexcept;

/// Nobody calls the following ones, so nothing fixes their arguments and results.
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
