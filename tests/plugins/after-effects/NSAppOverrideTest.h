#pragma once

// Dialogs of the platform for the override's tests.

#include <gtest/gtest.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "AE_GeneralPlug.h"
#include "NSAppOverridePlatform.h"
#include "TemporaryFolder.h"

inline constexpr char kPanelClass[] = "NSPanel";
inline constexpr char kDialogClass[] = "DVAMacDialog";
/// Derived from `kDialogClass`.
inline constexpr char kDerivedDialogClass[] = "DVAMacFontDialog";

/// A key event that a dialog received.
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
/// The events in order, and what the dialogs do at each.
inline std::vector<ReceivedKey> receivedKeys;
inline std::function<void()> onKey = [] {};

/// A dialog of the platform, hidden at first.
class TestDialog {
 public:
  explicit TestDialog(const char* title, const char* kind = kDialogClass);
  ~TestDialog();
  TestDialog(const TestDialog&) = delete;
  TestDialog& operator=(const TestDialog&) = delete;

  modal_window::Window* window() const { return mWindow; }
  int64_t number() const;
  /// Runs a modal session, which shows the dialog. Expects that the platform's own implementation
  /// got the window, and the caller its session.
  void RunSession() const;
  void Hide() const;

 private:
  modal_window::Window* mWindow;
};

/// Raises the platform's kind of exception, with the text "no key window".
void RaisePlatformException();

class OverrideTest : public testing::Test {
 protected:
  OverrideTest();

  /// Loads a copy of the plug-in from a file of its own. Returns its entry point.
  AEGP_PluginInitFuncPrototype* LoadCopy();

  /// Makes a dialog that exists until the test ends.
  TestDialog& Dialog(const char* title, const char* kind = kDialogClass) {
    return mDialogs.emplace_back(title, kind);
  }
  /// Runs the dialog's modal session. Returns whether the dialog was dismissed.
  static bool Show(const TestDialog& dialog);
  /// Does the same with a new dialog and hides it afterwards.
  bool ShowTitled(const char* title);

  /// Holds the copies and a framework.
  TemporaryFolder folder;

 private:
  std::deque<TestDialog> mDialogs;
};
