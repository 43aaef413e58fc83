#include "NSAppOverride.h"

#include <string_view>

#include "ModalWindow.h"
#include "desktop/Application.h"
#include "desktop/Exception.h"
#include "desktop/Log.h"
#include "desktop/Window.h"

namespace {

desktop::Application::BeginModalSession sBeginModalSession = nullptr;
desktop::Window* sOpenProjectDialog = nullptr;  // weak

desktop::Window* Desktop(modal_window::Window* window) {
  return reinterpret_cast<desktop::Window*>(window);
}

desktop::ModalSession beginModalOverride(desktop::Application& application,
                                         desktop::Window& window) {
  modal_window::recordOrDismiss(reinterpret_cast<modal_window::Window*>(&window));
  return sBeginModalSession(application, window);
}

desktop::KeyEvent escapeKeyEventForWindow(desktop::Window* window) {
  const std::string_view escape = modal_window::kEscapeCharacters;
  desktop::KeyEvent event;
  event.type = desktop::EventType::keyDown;
  event.windowNumber = window->windowNumber();
  event.characters.assign(escape.begin(), escape.end());
  event.charactersIgnoringModifiers = event.characters;
  event.keyCode = modal_window::kEscapeKeyCode;
  return event;
}

}  // namespace

void SwizzleNSAppBeginModal() {
  // A second time would make the override its own successor.
  if (sBeginModalSession) return;
  sBeginModalSession =
      desktop::Application::sharedApplication().exchangeBeginModalSession(beginModalOverride);
}

namespace modal_window {

bool isKindOfClass(Window* window, const char* className) {
  return Desktop(window)->isKindOfClass(desktop::ClassFromString(className));
}

std::string titleOf(Window* window) {
  return Desktop(window)->title();
}

bool isVisible(Window* window) {
  return Desktop(window)->isVisible();
}

void makeKeyAndOrderFront(Window* window) {
  Desktop(window)->makeKeyAndOrderFront();
}

void sendEscapeKeyToWindow(Window* window) {
  try {
    Desktop(window)->sendEvent(escapeKeyEventForWindow(Desktop(window)));
  } catch (const desktop::Exception& exception) {
    desktop::Log(std::string(kEscapeFailed) + exception.what());
  }
}

void setOpenProjectDialog(Window* window) {
  desktop::StoreWeak(&sOpenProjectDialog, Desktop(window));
}

Window* openProjectDialog() {
  return reinterpret_cast<Window*>(desktop::LoadWeak(&sOpenProjectDialog));
}

}  // namespace modal_window
