#include "NSAppOverrideTest.h"

#include "desktop/Application.h"
#include "desktop/Exception.h"
#include "desktop/Window.h"

namespace {

const desktop::WindowClass kPanel(kPanelClass);
const desktop::WindowClass kDialog(kDialogClass, &kPanel);
const desktop::WindowClass kDerivedDialog(kDerivedDialogClass, &kDialog);

class Dialog : public desktop::Window {
 public:
  using Window::Window;
  void sendEvent(const desktop::KeyEvent& event) override {
    const auto text = [](const std::u16string& units) {
      return std::string(units.begin(), units.end());
    };
    EXPECT_EQ(event.context, nullptr);
    receivedKeys.push_back({static_cast<uint64_t>(event.type), event.location.x, event.location.y,
                            event.modifierFlags, event.timestamp, event.windowNumber,
                            text(event.characters), text(event.charactersIgnoringModifiers),
                            event.isARepeat, event.keyCode});
    onKey();
  }
};

Dialog* Desktop(modal_window::Window* window) {
  return static_cast<Dialog*>(reinterpret_cast<desktop::Window*>(window));
}

}  // namespace

TestDialog::TestDialog(const char* title, const char* kind)
    : mWindow(reinterpret_cast<modal_window::Window*>(
          static_cast<desktop::Window*>(new Dialog(*desktop::ClassFromString(kind), title)))) {}

TestDialog::~TestDialog() {
  delete Desktop(mWindow);
}

int64_t TestDialog::number() const {
  return Desktop(mWindow)->windowNumber();
}

void TestDialog::RunSession() const {
  auto& application = desktop::Application::sharedApplication();
  const desktop::Window* begun = nullptr;
  application.setModalRunner([&](desktop::Window& window) {
    begun = &window;
    window.makeKeyAndOrderFront();
    return desktop::ModalSession{17};
  });
  EXPECT_EQ(application.beginModalSessionForWindow(*Desktop(mWindow)), 17);
  EXPECT_EQ(begun, Desktop(mWindow));
}

void TestDialog::Hide() const {
  Desktop(mWindow)->orderOut();
}

void RaisePlatformException() {
  throw desktop::Exception("no key window");
}
