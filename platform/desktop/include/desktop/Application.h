#pragma once

#include <cstdint>
#include <functional>

#include "desktop/Export.h"
#include "desktop/Window.h"

// Replaces Cocoa on platforms without it, under Cocoa's names. The library is shared, so that the
// host's process and the plug-in modules see the same objects. The objects are never destroyed, so
// that a module can use them while it is finalised. Texts are UTF-8. Main thread only.

namespace desktop {

/// The modal session of a dialog.
using ModalSession = int64_t;

/// The process as an application.
class DESKTOP_EXPORT Application {
 public:
  /// An implementation of `beginModalSessionForWindow`.
  using BeginModalSession = ModalSession (*)(Application& application, Window& window);

  /// Returns the process's only application.
  static Application& sharedApplication();

  /// Begins a modal session with the current implementation.
  ModalSession beginModalSessionForWindow(Window& window);
  /// Returns the current implementation of `beginModalSessionForWindow`.
  BeginModalSession beginModalSession() const { return mBeginModalSession; }
  /// Replaces the implementation of `beginModalSessionForWindow` and returns the former one.
  BeginModalSession exchangeBeginModalSession(BeginModalSession replacement);
  /// Sets the function that the platform's own implementation runs for a window. Without one, it
  /// does nothing and returns 0. Only the process's owner calls this.
  void setModalRunner(std::function<ModalSession(Window& window)> runner);

 private:
  Application();
  static ModalSession runModal(Application& application, Window& window);

  BeginModalSession mBeginModalSession;
  std::function<ModalSession(Window&)> mModalRunner;
};

}  // namespace desktop
