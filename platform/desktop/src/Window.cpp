#include "desktop/Window.h"

#include <map>
#include <utility>

namespace desktop {
namespace {

std::map<std::string, const WindowClass*>& Classes() {
  static auto& classes = *new std::map<std::string, const WindowClass*>;
  return classes;
}

std::map<Window**, Window*>& WeakReferences() {
  static auto& references = *new std::map<Window**, Window*>;
  return references;
}

}  // namespace

WindowClass::WindowClass(std::string name, const WindowClass* base)
    : mName(std::move(name)), mBase(base) {
  Classes()[mName] = this;
}

WindowClass::~WindowClass() {
  if (ClassFromString(mName) == this) Classes().erase(mName);
}

const WindowClass* ClassFromString(const std::string& name) {
  const auto found = Classes().find(name);
  return found == Classes().end() ? nullptr : found->second;
}

Window::Window(const WindowClass& windowClass, std::string title)
    : mClass(windowClass), mTitle(std::move(title)) {
  static int64_t lastNumber = 0;
  mWindowNumber = ++lastNumber;
}

Window::~Window() {
  std::erase_if(WeakReferences(), [this](const auto& entry) {
    if (entry.second != this) return false;
    *entry.first = nullptr;
    return true;
  });
}

bool Window::isKindOfClass(const WindowClass* windowClass) const {
  for (const WindowClass* own = &mClass; own; own = own->base()) {
    if (own == windowClass) return true;
  }
  return false;
}

void Window::makeKeyAndOrderFront() {
  mVisible = true;
}

void StoreWeak(Window** slot, Window* window) {
  WeakReferences().erase(slot);
  if (window) WeakReferences()[slot] = window;
  *slot = window;
}

Window* LoadWeak(Window** slot) {
  return *slot;
}

}  // namespace desktop
