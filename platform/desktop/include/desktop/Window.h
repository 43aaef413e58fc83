#pragma once

#include <cstdint>
#include <string>

#include "desktop/Export.h"

namespace desktop {

/// A class of windows. Objects are namespace-scope statics and register under their name.
class DESKTOP_EXPORT WindowClass {
 public:
  explicit WindowClass(std::string name, const WindowClass* base = nullptr);
  ~WindowClass();
  WindowClass(const WindowClass&) = delete;
  WindowClass& operator=(const WindowClass&) = delete;

  const std::string& name() const { return mName; }
  const WindowClass* base() const { return mBase; }

 private:
  std::string mName;
  const WindowClass* mBase;
};

/// The registered class of that name, or null.
DESKTOP_EXPORT const WindowClass* ClassFromString(const std::string& name);

enum class EventType : int32_t { keyDown = 10 };

struct Point {
  double x = 0;
  double y = 0;
};

/// A key event, addressed to the window with that number.
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

class DESKTOP_EXPORT Window {
 public:
  Window(const WindowClass& windowClass, std::string title);
  /// Clears every weak reference to this window.
  virtual ~Window();
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  /// Whether the window is of that class or of one derived from it; false for null.
  bool isKindOfClass(const WindowClass* windowClass) const;
  const std::string& title() const { return mTitle; }
  bool isVisible() const { return mVisible; }
  /// Above 0, and never used again for another window.
  int64_t windowNumber() const { return mWindowNumber; }
  /// Shows the window and makes it the one that gets key events.
  void makeKeyAndOrderFront();
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
