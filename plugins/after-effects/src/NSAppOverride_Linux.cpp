#include "NSAppOverride.h"

#include "ModalWindow.h"
#include "desktop/Application.h"
#include "desktop/Exception.h"
#include "desktop/Log.h"
#include "desktop/Window.h"

namespace {

constexpr uint16_t kEscapeKeyCode = 0x35;

desktop::Application::BeginModalSession sBeginModalSession = nullptr;
desktop::Window* sOpenProjectDialog = nullptr;  // weak

desktop::Window* Desktop(ModalWindow* window) {
  return reinterpret_cast<desktop::Window*>(window);
}

desktop::ModalSession beginModalOverride(desktop::Application& application,
                                         desktop::Window& window) {
  considerModalWindow(reinterpret_cast<ModalWindow*>(&window));
  return sBeginModalSession(application, window);
}

desktop::KeyEvent escapeKeyEventForWindow(desktop::Window* window) {
  desktop::KeyEvent event;
  event.type = desktop::EventType::keyDown;
  event.windowNumber = window->windowNumber();
  event.characters = u"\x1B";
  event.charactersIgnoringModifiers = u"\x1B";
  event.keyCode = kEscapeKeyCode;
  return event;
}

}  // namespace

void SwizzleNSAppBeginModal() {
  // A second time would make the override its own successor.
  if (sBeginModalSession) return;
  sBeginModalSession =
      desktop::Application::sharedApplication().exchangeBeginModalSession(beginModalOverride);
}

bool isKindOfClass(ModalWindow* window, const char* className) {
  return Desktop(window)->isKindOfClass(desktop::ClassFromString(className));
}

std::string titleOf(ModalWindow* window) {
  return Desktop(window)->title();
}

bool isVisible(ModalWindow* window) {
  return Desktop(window)->isVisible();
}

void makeKeyAndOrderFront(ModalWindow* window) {
  Desktop(window)->makeKeyAndOrderFront();
}

void sendEscapeKeyToWindow(ModalWindow* window) {
  try {
    Desktop(window)->sendEvent(escapeKeyEventForWindow(Desktop(window)));
  } catch (const desktop::Exception& exception) {
    desktop::Log("Exception when sendEscapeKeyToWindow:  exception=" +
                 std::string(exception.what()));
  }
}

void setOpenProjectDialog(ModalWindow* window) {
  desktop::StoreWeak(&sOpenProjectDialog, Desktop(window));
}

ModalWindow* openProjectDialog() {
  return reinterpret_cast<ModalWindow*>(desktop::LoadWeak(&sOpenProjectDialog));
}
