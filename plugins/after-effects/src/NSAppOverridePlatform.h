#pragma once

#include <cstdint>
#include <string>

// The modal override has a portable part, which decides, and a half for each platform, which works
// on windows. Each calls the other through this header. Texts are UTF-8. Main thread only.

namespace modal_window {

/// A window of the platform, borrowed for the call.
struct Window;

inline constexpr uint16_t kEscapeKeyCode = 0x35;
inline constexpr char kEscapeCharacters[] = "\x1B";
/// Begins the log line about an exception that the Escape key raised.
inline constexpr char kEscapeFailed[] = "Exception when sendEscapeKeyToWindow:  exception=";

// Platform functions of the override.

/// Tests whether the window is of that class or of one derived from it; false if there is no class
/// of that name.
bool isKindOfClass(Window* window, const char* className);
/// Returns the name of the window's class.
std::string classNameOf(Window* window);
/// Returns the window's whole title.
std::string titleOf(Window* window);
/// Tests whether the window is on the screen.
bool isVisible(Window* window);
/// Shows the window in front and makes it the one that gets key events.
void makeKeyAndOrderFront(Window* window);
/// Sends the Escape key to the window. Logs an exception of the platform's and returns; lets others
/// pass.
void sendEscapeKeyToWindow(Window* window);
/// Records the open project dialog of the project opening under way, or null for none. Doesn't own
/// the window.
void setOpenProjectDialog(Window* window);
/// Returns the recorded dialog, or null once its window is gone, even if another window has its
/// address by then.
Window* openProjectDialog();
/// Tests whether the application would begin the next modal session with our override.
bool isOverrideInPlace();

// The portable part.

/// Records an open project dialog and dismisses a missing fonts dialog after one. For each modal
/// window, before the platform begins its session.
void handleModalWindow(Window* window);
/// Traces an exception of the platform's that the Escape key raised.
void traceFailedEscape(const char* exception);
/// Tests for the title of the host's open project dialog, in any of its languages.
bool isThisTheOpenProjectDialog(Window* window);
/// Tests for the title of the missing fonts dialog of that version of the host. Before 114 the
/// title is just "After Effects", and the recorded open project dialog has to be hidden or gone.
bool isMissingFontsWindow(Window* window, int32_t aeMajorVersion);
/// Dismisses the dialog with the Escape key, looks for no other one and starts the font activation
/// process. Without a suite that the start needs, no activation starts.
void suppressWindowAndStartFontActivationProcess(Window* window, int32_t aeMajorVersion);

}  // namespace modal_window
