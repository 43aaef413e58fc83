#pragma once

#include <cstdint>
#include <string>

#include "desktop/Export.h"

namespace desktop {

/// A class of windows, as in Cocoa's runtime. Define it as a static at namespace scope.
class DESKTOP_EXPORT WindowClass {
 public:
  /// Registers the class by its name, instead of an earlier one. `base` must outlive it.
  explicit WindowClass(std::string name, const WindowClass* base = nullptr);
  ~WindowClass();
  WindowClass(const WindowClass&) = delete;
  WindowClass& operator=(const WindowClass&) = delete;

  /// Returns the name.
  const std::string& name() const { return mName; }
  /// Returns the base class, or null.
  const WindowClass* base() const { return mBase; }

 private:
  std::string mName;
  const WindowClass* mBase;
};

/// Returns the class of that name, or null.
DESKTOP_EXPORT const WindowClass* ClassFromString(const std::string& name);

/// The kinds of events.
enum class EventType : int32_t { keyDown = 10 };

/// A location on the screen, in points.
struct Point {
  double x = 0;
  double y = 0;
};

/// A key event for the window with that number. Whoever sends the event chooses the window.
struct KeyEvent {
  EventType type = EventType::keyDown;
  Point location;
  uint32_t modifierFlags = 0;
  double timestamp = 0;
  int64_t windowNumber = 0;
  const void* context = nullptr;
  std::u16string characters;
  std::u16string charactersIgnoringModifiers;
  bool isARepeat = false;
  uint16_t keyCode = 0;
};

/// A window. Its owner shows it, and handles its events in a derived class.
class DESKTOP_EXPORT Window {
 public:
  /// Makes a hidden window. `windowClass` must outlive it.
  Window(const WindowClass& windowClass, std::string title);
  /// Clears every weak reference to this window.
  virtual ~Window();
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  /// Returns the name of the window's class.
  const std::string& className() const { return mClass.name(); }
  /// Tests whether the window has that class or a class derived from it. Returns false for null.
  bool isKindOfClass(const WindowClass* windowClass) const;
  /// Returns the title that the user sees.
  const std::string& title() const { return mTitle; }
  /// Tests whether the window is on the screen.
  bool isVisible() const { return mVisible; }
  /// Returns the window's number, positive and never used again.
  int64_t windowNumber() const { return mWindowNumber; }
  /// Shows the window.
  void makeKeyAndOrderFront();
  /// Hides the window.
  void orderOut() { mVisible = false; }
  /// Handles the event at once. May throw `Exception`.
  virtual void sendEvent(const KeyEvent& event) = 0;

 private:
  const WindowClass& mClass;
  std::string mTitle;
  bool mVisible = false;
  int64_t mWindowNumber;
};

/// Stores a weak reference to `window`, or null. The slot must live until the window is gone or
/// another reference is stored in it.
DESKTOP_EXPORT void StoreWeak(Window** slot, Window* window);
/// Returns the window of a weak reference, or null once the window is gone.
DESKTOP_EXPORT Window* LoadWeak(Window** slot);

}  // namespace desktop
