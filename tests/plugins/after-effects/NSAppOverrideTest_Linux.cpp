#include "NSAppOverride.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "FakeHost.h"
#include "FakeTamberlink.h"
#include "GlobalState.h"
#include "desktop/Application.h"
#include "desktop/Exception.h"
#include "desktop/Log.h"
#include "desktop/Window.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const desktop::WindowClass kPanel("NSPanel");
const desktop::WindowClass kDialog("DVAMacDialog", &kPanel);
const desktop::WindowClass kDerivedDialog("DVAMacFontDialog", &kDialog);

class Dialog : public desktop::Window {
 public:
  explicit Dialog(std::string title, const desktop::WindowClass& windowClass = kDialog)
      : Window(windowClass, std::move(title)) {}
  void sendEvent(const desktop::KeyEvent& event) override {
    events.push_back(event);
    wasVisible = isVisible();
    if (raises) throw desktop::Exception("no key window");
    if (raisesInt) throw 7;
  }

  std::vector<desktop::KeyEvent> events;
  bool wasVisible = false;
  bool raises = false;
  bool raisesInt = false;
};

class OverrideTest : public testing::Test {
 protected:
  OverrideTest() {
    fake_tamberlink.Install();
    global_state.picaBasicSuite = fake_host.basicSuite();
    global_state.hostMajorVersion = 114;
    global_state.suppressModalWindows = true;
    fake_host.path = u"/a.aep";
    application.setModalRunner([this](desktop::Window& window) {
      begun.push_back(&window);
      return desktop::ModalSession{17};
    });
    SwizzleNSAppBeginModal();
  }

  // Whether the dialog was dismissed.
  bool Show(Dialog& dialog) {
    dialog.makeKeyAndOrderFront();
    const size_t before = dialog.events.size();
    EXPECT_EQ(application.beginModalSessionForWindow(dialog), 17);
    EXPECT_EQ(begun.back(), &dialog);
    return dialog.events.size() > before;
  }

  bool ShowTitled(const char* title) {
    Dialog dialog(title);
    return Show(dialog);
  }

  desktop::Application& application = desktop::Application::sharedApplication();
  std::vector<desktop::Window*> begun;
};

TEST_F(OverrideTest, DismissesTheFontsDialogAfterTheOpenDialogInEveryLanguage) {
  const char* const pairs[][2] = {
      {"Open Project", "Resolve Fonts"},           {"Ouvrir un projet", "Résoudre les polices"},
      {"Projekt öffnen", "Schriftarten auflösen"}, {"Abrir proyecto", "Corregir fuentes"},
      {"Apri progetto", "Risoluzione font"},       {"Abrir projeto", "Solucionar fontes"},
      {"プロジェクトを開く", "フォントを解決する"}};
  for (const auto& [open, fonts] : pairs) {
    EXPECT_FALSE(ShowTitled(open));
    EXPECT_TRUE(ShowTitled(fonts)) << fonts;
    EXPECT_TRUE(global_state.fontActivationInProgress);
    global_state.endFontActivationProcess();
    EXPECT_FALSE(ShowTitled(fonts)) << fonts;
  }
}

TEST_F(OverrideTest, SendsOneEscapeToTheVisibleDialog) {
  ShowTitled("Open Project");
  Dialog dialog("Resolve Fonts", kDerivedDialog);
  EXPECT_EQ(application.beginModalSessionForWindow(dialog), 17);
  ASSERT_EQ(dialog.events.size(), 1u);
  EXPECT_TRUE(dialog.wasVisible);
  const desktop::KeyEvent& event = dialog.events[0];
  EXPECT_EQ(event.type, desktop::EventType::keyDown);
  EXPECT_EQ(event.windowNumber, dialog.windowNumber());
  EXPECT_EQ(event.characters, u"\x1B");
  EXPECT_EQ(event.charactersIgnoringModifiers, u"\x1B");
  EXPECT_EQ(event.keyCode, 53);
  EXPECT_EQ(event.modifierFlags, 0u);
  EXPECT_EQ(event.location.x, 0);
  EXPECT_EQ(event.location.y, 0);
  EXPECT_EQ(event.timestamp, 0);
  EXPECT_EQ(event.context, nullptr);
  EXPECT_FALSE(event.isARepeat);
}

TEST_F(OverrideTest, OnlyTheExactTitleOfTheClassCounts) {
  ShowTitled("Open Project");
  EXPECT_FALSE(ShowTitled("resolve fonts"));
  EXPECT_FALSE(ShowTitled("Resolve Fonts "));
  EXPECT_FALSE(ShowTitled("After Effects"));
  Dialog panel("Resolve Fonts", kPanel);
  testing::internal::CaptureStdout();
  EXPECT_FALSE(Show(panel));
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  testing::internal::CaptureStdout();
  EXPECT_TRUE(ShowTitled("Resolve Fonts"));
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "Saw a DVAMacDialog titled: Resolve Fonts\n");
}

TEST_F(OverrideTest, TouchesNothingWhileItMustNotSuppress) {
  global_state.suppressModalWindows = false;
  testing::internal::CaptureStdout();
  ShowTitled("Open Project");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  global_state.suppressModalWindows = true;
  EXPECT_FALSE(ShowTitled("Resolve Fonts"));
}

TEST_F(OverrideTest, ADisabledFrameworkLeavesTheDialogToTheUserAndTheNextIsACandidate) {
  ShowTitled("Open Project");
  fake_tamberlink.enabled = false;
  EXPECT_FALSE(ShowTitled("Resolve Fonts"));
  EXPECT_FALSE(global_state.fontActivationInProgress);
  fake_tamberlink.enabled = true;
  EXPECT_TRUE(ShowTitled("Resolve Fonts"));
  EXPECT_EQ(fake_tamberlink.calls.size(), 2u);
}

TEST_F(OverrideTest, AnOpenedProjectEndsTheSearch) {
  ShowTitled("Open Project");
  projectWasOpened();
  EXPECT_FALSE(ShowTitled("Resolve Fonts"));
  EXPECT_THAT(fake_tamberlink.calls, IsEmpty());
}

TEST_F(OverrideTest, Hosts113DismissTheirDialogOnceTheOpenDialogIsHidden) {
  global_state.hostMajorVersion = 113;
  Dialog first("Open Project");
  Show(first);
  Dialog open("Open Project");
  Show(open);
  first.orderOut();
  EXPECT_FALSE(ShowTitled("After Effects"));
  EXPECT_TRUE(ShowTitled("After Effects"));
  global_state.endFontActivationProcess();

  Show(open);
  EXPECT_FALSE(ShowTitled("Resolve Fonts"));
  Show(open);
  open.orderOut();
  EXPECT_TRUE(ShowTitled("After Effects"));
}

TEST_F(OverrideTest, AnOpenDialogThatIsGoneCountsAsHidden) {
  global_state.hostMajorVersion = 113;
  {
    auto open = std::make_unique<Dialog>("Open Project");
    Show(*open);
  }
  // Often gets the address of the former.
  auto other = std::make_unique<Dialog>("After Effects");
  EXPECT_TRUE(Show(*other));
}

TEST_F(OverrideTest, AnExceptionIsLoggedAndTheSuppressionGoesOn) {
  std::vector<std::string> log;
  desktop::SetLogSink([&](const std::string& line) { log.push_back(line); });
  ShowTitled("Open Project");
  Dialog dialog("Resolve Fonts");
  dialog.raises = true;
  EXPECT_TRUE(Show(dialog));
  EXPECT_THAT(log, ElementsAre("Exception when sendEscapeKeyToWindow:  exception=no key window"));
  EXPECT_TRUE(global_state.fontActivationInProgress);
  desktop::SetLogSink({});
}

TEST_F(OverrideTest, OtherExceptionsPass) {
  ShowTitled("Open Project");
  Dialog dialog("Resolve Fonts");
  dialog.raisesInt = true;
  EXPECT_THROW(application.beginModalSessionForWindow(dialog), int);
  EXPECT_FALSE(global_state.fontActivationInProgress);
}

TEST_F(OverrideTest, AMissingSuiteStartsNoProcessAndTheSessionBegins) {
  ShowTitled("Open Project");
  fake_host.refusedSuites = {{"AEGP Proj Suite", 9}};
  EXPECT_TRUE(ShowTitled("Resolve Fonts"));
  EXPECT_FALSE(global_state.fontActivationInProgress);
  EXPECT_FALSE(ShowTitled("Resolve Fonts"));
}

}  // namespace
