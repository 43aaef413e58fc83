#include <gtest/gtest.h>

#include <memory>

#include "desktop/Application.h"
#include "desktop/Window.h"
#include "desktop/Workspace.h"

namespace {

class PlainWindow : public desktop::Window {
 public:
  using Window::Window;
  void sendEvent(const desktop::KeyEvent& /*event*/) override {}
};

TEST(WindowClass, IsFoundByNameAsLongAsItLives) {
  const desktop::WindowClass panel("Panel");
  {
    const desktop::WindowClass dialog("Dialog", &panel);
    EXPECT_EQ(desktop::ClassFromString("Dialog"), &dialog);
    const desktop::WindowClass again("Panel");
    EXPECT_EQ(desktop::ClassFromString("Panel"), &again);
    const PlainWindow window(dialog, "");
    EXPECT_TRUE(window.isKindOfClass(&dialog));
    EXPECT_TRUE(window.isKindOfClass(&panel));
    EXPECT_FALSE(window.isKindOfClass(&again));
    EXPECT_FALSE(window.isKindOfClass(nullptr));
  }
  EXPECT_EQ(desktop::ClassFromString("Dialog"), nullptr);
}

TEST(WeakReference, ReadsAsNullOnceTheWindowIsGone) {
  const desktop::WindowClass panel("Panel");
  desktop::Window* slots[2] = {};
  auto window = std::make_unique<PlainWindow>(panel, "");
  auto other = std::make_unique<PlainWindow>(panel, "");
  desktop::StoreWeak(&slots[0], window.get());
  desktop::StoreWeak(&slots[1], window.get());
  desktop::StoreWeak(&slots[1], other.get());
  EXPECT_EQ(desktop::LoadWeak(&slots[0]), window.get());
  window.reset();
  EXPECT_EQ(desktop::LoadWeak(&slots[0]), nullptr);
  EXPECT_EQ(desktop::LoadWeak(&slots[1]), other.get());
  desktop::StoreWeak(&slots[1], nullptr);
  other.reset();
  EXPECT_EQ(desktop::LoadWeak(&slots[1]), nullptr);
}

TEST(Application, RunsWhatTookTheImplementationsPlaceAndCanReachTheFormer) {
  static desktop::Application::BeginModalSession former = nullptr;
  auto& application = desktop::Application::sharedApplication();
  const desktop::WindowClass panel("Panel");
  PlainWindow window(panel, "");
  EXPECT_EQ(application.beginModalSessionForWindow(window), 0);
  application.setModalRunner([](desktop::Window& shown) { return shown.windowNumber(); });
  former = application.exchangeBeginModalSession(
      [](desktop::Application& whole, desktop::Window& shown) { return -former(whole, shown); });
  EXPECT_EQ(application.beginModalSessionForWindow(window), -window.windowNumber());
}

TEST(Workspace, KnowsWhoIsInFrontAmongThoseThatRun) {
  auto& workspace = desktop::Workspace::sharedWorkspace();
  EXPECT_EQ(workspace.frontmostApplication(), nullptr);
  EXPECT_FALSE(workspace.activate(4, 0));
  workspace.addRunningApplication({4, "four"});
  workspace.addRunningApplication({5, "five"});
  EXPECT_TRUE(workspace.activate(5, 0));
  EXPECT_EQ(workspace.frontmostApplication()->bundleIdentifier, "five");
  workspace.removeRunningApplication(5);
  EXPECT_EQ(workspace.frontmostApplication(), nullptr);
}

}  // namespace
