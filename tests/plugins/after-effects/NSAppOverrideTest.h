#pragma once

// What the override's tests need of a platform: dialogs that tell what they got.

#include <gtest/gtest.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "AE_GeneralPlug.h"
#include "ModalWindow.h"
#include "TemporaryFolder.h"

inline constexpr char kPanelClass[] = "NSPanel";
inline constexpr char kDialogClass[] = "DVAMacDialog";
/// Derived from the one before.
inline constexpr char kDerivedDialogClass[] = "DVAMacFontDialog";

/// The key event as a window got it.
struct ReceivedKey {
  uint64_t type;
  double x, y;
  uint64_t modifierFlags;
  double timestamp;
  int64_t windowNumber;
  std::string characters, charactersIgnoringModifiers;
  bool isARepeat;
  int keyCode;
};
/// What the dialogs got, in order, and what they do about it.
inline std::vector<ReceivedKey> receivedKeys;
inline std::function<void()> onKey = [] {};

/// A window of the platform, hidden at first.
class TestDialog {
 public:
  explicit TestDialog(const char* title, const char* kind = kDialogClass);
  ~TestDialog();
  TestDialog(const TestDialog&) = delete;
  TestDialog& operator=(const TestDialog&) = delete;

  modal_window::Window* window() const { return mWindow; }
  int64_t number() const;
  /// Begins and ends a modal session, which shows the window. Expects that the platform's own
  /// implementation got it, and its caller the session.
  void RunSession() const;
  void Hide() const;

 private:
  modal_window::Window* mWindow;
};

/// Raises an exception of the platform's kind that says "no key window".
void RaisePlatformException();

class OverrideTest : public testing::Test {
 protected:
  OverrideTest();

  /// Loads another copy of the plug-in, from a file of its own, and returns its entry point.
  AEGP_PluginInitFuncPrototype* LoadCopy();

  /// A dialog that exists until the test ends.
  TestDialog& Dialog(const char* title, const char* kind = kDialogClass) {
    return mDialogs.emplace_back(title, kind);
  }
  /// Whether the dialog was dismissed.
  static bool Show(const TestDialog& dialog);
  /// The same with a dialog that is hidden afterwards.
  bool ShowTitled(const char* title);

  /// Where the copies find a framework.
  TemporaryFolder folder;

 private:
  std::deque<TestDialog> mDialogs;
};
