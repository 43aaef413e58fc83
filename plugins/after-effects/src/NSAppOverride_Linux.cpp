#include "NSAppOverride.h"

#include <string_view>

#include "NSAppOverridePlatform.h"
#include "desktop/Application.h"
#include "desktop/Exception.h"
#include "desktop/Log.h"
#include "desktop/Window.h"

namespace {

desktop::Application::BeginModalSession sNextBeginModalSession = nullptr;
desktop::Window* sOpenProjectDialog = nullptr;  // weak

desktop::Window* desktopWindow(modal_window::Window* window) {
  return reinterpret_cast<desktop::Window*>(window);
}

desktop::ModalSession beginModalOverride(desktop::Application& application,
                                         desktop::Window& window) {
  modal_window::handleModalWindow(reinterpret_cast<modal_window::Window*>(&window));
  return sNextBeginModalSession(application, window);
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
  if (sNextBeginModalSession) return;
  sNextBeginModalSession =
      desktop::Application::sharedApplication().exchangeBeginModalSession(beginModalOverride);
}

namespace modal_window {

bool isKindOfClass(Window* window, const char* className) {
  return desktopWindow(window)->isKindOfClass(desktop::ClassFromString(className));
}

std::string classNameOf(Window* window) {
  return desktopWindow(window)->className();
}

std::string titleOf(Window* window) {
  return desktopWindow(window)->title();
}

bool isVisible(Window* window) {
  return desktopWindow(window)->isVisible();
}

void makeKeyAndOrderFront(Window* window) {
  desktopWindow(window)->makeKeyAndOrderFront();
}

void sendEscapeKeyToWindow(Window* window) {
  try {
    desktopWindow(window)->sendEvent(escapeKeyEventForWindow(desktopWindow(window)));
  } catch (const desktop::Exception& exception) {
    desktop::Log(std::string(kEscapeFailed) + exception.what());
    traceFailedEscape(exception.what());
  }
}

void setOpenProjectDialog(Window* window) {
  desktop::StoreWeak(&sOpenProjectDialog, desktopWindow(window));
}

Window* openProjectDialog() {
  return reinterpret_cast<Window*>(desktop::LoadWeak(&sOpenProjectDialog));
}

bool isOverrideInPlace() {
  return desktop::Application::sharedApplication().beginModalSession() == beginModalOverride;
}

}  // namespace modal_window
