#pragma once

#include <cstdint>
#include <string>

// The modal override above and below the platform. What it decides is portable and works on an
// opaque window; each platform gives the window's operations. Main thread only. Texts are UTF-8.

/// The platform's window, borrowed for the length of a call.
struct ModalWindow;

// Of the platform.

/// False also when no class has that name.
bool isKindOfClass(ModalWindow* window, const char* className);
std::string titleOf(ModalWindow* window);
bool isVisible(ModalWindow* window);
void makeKeyAndOrderFront(ModalWindow* window);
/// Writes an exception that the platform raises to the system's log and goes on.
void sendEscapeKeyToWindow(ModalWindow* window);
/// Keeps a reference in `slot` that doesn't own: it reads as null once the window is gone. An
/// address alone proves nothing, since it is used again at once. `window` may be null.
void storeWeak(ModalWindow** slot, ModalWindow* window);
ModalWindow* loadWeak(ModalWindow** slot);

// Of the portable part, for the platform's override.

/// Everything that the override does before it calls the platform's implementation.
void considerModalWindow(ModalWindow* window);
bool isThisTheOpenProjectDialog(ModalWindow* window);
bool isMissingFontsWindow(ModalWindow* window, int32_t aeMajorVersion);
/// Dismisses the dialog. Throws the `int` 516 when the host lacks a suite.
void suppressWindowAndStartFontActivationProcess(ModalWindow* window, int32_t aeMajorVersion);
