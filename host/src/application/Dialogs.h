#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "desktop/Window.h"

namespace host {

/// The class of the host's own dialogs.
inline constexpr char kDialogClass[] = "DVAMacDialog";

bool IsLanguage(std::string_view language);
/// The title of the host's open project dialog.
std::string OpenProjectTitle(std::string_view language);
/// The title of the dialog about the fonts that a project lacks.
std::string MissingFontsTitle(std::string_view language, int majorVersion);

/// A dialog of the host. Lives as long as it is open.
class DialogWindow : public desktop::Window {
 public:
  /// Calls `onKey` for each key event before the event takes effect. `onKey` may throw
  /// `desktop::Exception`.
  DialogWindow(const desktop::WindowClass& windowClass, const std::string& title,
               std::function<void(const DialogWindow&, const desktop::KeyEvent&)> onKey);
  void sendEvent(const desktop::KeyEvent& event) override;
  /// Whether the event is an Escape key addressed to this window.
  bool isEscape(const desktop::KeyEvent& event) const;

  /// Begins the dialog's modal session. The user sees the dialog unless an Escape key event
  /// addressed to it came before.
  void begin() {
    mBegun = true;
    mShown = !mDismissed;
  }
  bool hasBegun() const { return mBegun; }
  bool wasShown() const { return mShown; }

 private:
  std::function<void(const DialogWindow&, const desktop::KeyEvent&)> mOnKey;
  bool mDismissed = false;
  bool mBegun = false;
  bool mShown = false;
};

}  // namespace host
