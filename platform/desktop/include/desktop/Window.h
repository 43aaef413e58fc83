#pragma once

#include <cstdint>
#include <string>

#include "desktop/Export.h"

namespace desktop {

/// A class of windows. Objects are namespace-scope statics and register under their name.
class DESKTOP_EXPORT WindowClass {
 public:
  /// `base` outlives the class. The latest class of a name is the one that is found by it.
  explicit WindowClass(std::string name, const WindowClass* base = nullptr);
  ~WindowClass();
  WindowClass(const WindowClass&) = delete;
  WindowClass& operator=(const WindowClass&) = delete;

  /// The class that this one is derived from, or null.
  const WindowClass* base() const { return mBase; }

 private:
  std::string mName;
  const WindowClass* mBase;
};

/// The registered class of that name, or null.
DESKTOP_EXPORT const WindowClass* ClassFromString(const std::string& name);

/// What an event tells of.
enum class EventType : int32_t { keyDown = 10 };

/// A place on the screen, in points.
struct Point {
  double x = 0;
  double y = 0;
};

/// A key event. `windowNumber` says for which window it is meant; it goes to the window that is
/// asked to take it.
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

/// A window, owned by whoever shows it. What it does with events is its owner's to say.
class DESKTOP_EXPORT Window {
 public:
  /// Hidden at first. `windowClass` outlives the window.
  Window(const WindowClass& windowClass, std::string title);
  /// Clears every weak reference to this window.
  virtual ~Window();
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  /// Whether the window is of that class or of one derived from it; false for null.
  bool isKindOfClass(const WindowClass* windowClass) const;
  /// What the user sees as the window's name.
  const std::string& title() const { return mTitle; }
  /// Whether the window is on the screen.
  bool isVisible() const { return mVisible; }
  /// Above 0, and never used again for another window.
  int64_t windowNumber() const { return mWindowNumber; }
  /// Shows the window.
  void makeKeyAndOrderFront();
  /// Hides the window.
  void orderOut() { mVisible = false; }
  /// Delivers the event at once. May raise `Exception`.
  virtual void sendEvent(const KeyEvent& event) = 0;

 private:
  const WindowClass& mClass;
  std::string mTitle;
  bool mVisible = false;
  int64_t mWindowNumber;
};

/// Puts a reference to `window`, or null, into `slot`: it doesn't keep the window alive, and
/// `LoadWeak` reads it as null once the window is gone. The slot has to outlive its last store of
/// a window, or have null stored.
DESKTOP_EXPORT void StoreWeak(Window** slot, Window* window);
DESKTOP_EXPORT Window* LoadWeak(Window** slot);

}  // namespace desktop
