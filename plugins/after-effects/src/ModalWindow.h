#pragma once

#include <cstdint>
#include <string>

// What the modal override's portable part and its platform halves give each other: the decisions
// are portable and work on an opaque window, each platform gives the window's operations. Main
// thread only. Texts are UTF-8.

/// The platform's window, borrowed for the length of a call.
struct ModalWindow;

// Of the platform.

/// Whether the window is of that class or of one derived from it; false also when no class has that
/// name.
bool isKindOfClass(ModalWindow* window, const char* className);
/// The whole title.
std::string titleOf(ModalWindow* window);
/// Whether the window is on the screen.
bool isVisible(ModalWindow* window);
/// Shows the window in front and makes it the one that gets key events.
void makeKeyAndOrderFront(ModalWindow* window);
/// Sends the Escape key to the window. Writes an exception that the platform raises to the system's
/// log and goes on; others pass.
void sendEscapeKeyToWindow(ModalWindow* window);
/// Records the open project dialog of the project opening under way, or null for none. The record
/// doesn't own the window.
void setOpenProjectDialog(ModalWindow* window);
/// The recorded dialog; null also once its window is gone. An address alone would prove nothing,
/// since it is used again at once.
ModalWindow* openProjectDialog();

// Of the portable part, for the platform's override.

/// Everything that the override does before it calls the platform's implementation.
void considerModalWindow(ModalWindow* window);
/// Whether the title is that of the host's open project dialog in one of its languages.
bool isThisTheOpenProjectDialog(ModalWindow* window);
/// Whether the title is that of the missing fonts dialog of a host of that version. Before 114 it
/// is no telling title, and counts only once the recorded open project dialog is hidden or gone.
bool isMissingFontsWindow(ModalWindow* window, int32_t aeMajorVersion);
/// Dismisses the dialog, expects no other one for this project, and starts the font activation
/// process; none when the host lacks a suite.
void suppressWindowAndStartFontActivationProcess(ModalWindow* window, int32_t aeMajorVersion);
