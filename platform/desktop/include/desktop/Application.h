#pragma once

#include <cstdint>
#include <functional>

#include "desktop/Export.h"
#include "desktop/Window.h"

// The layer that takes Cocoa's place where there is no Cocoa. Operations carry the names of
// Cocoa's. A shared library: the host's process and each plug-in module see the same objects. Main
// thread only. Text is UTF-8.

namespace desktop {

/// Stands for the session that a modal dialog runs in.
using ModalSession = int64_t;

/// The application object of the process.
class DESKTOP_EXPORT Application {
 public:
  /// An implementation of `beginModalSessionForWindow`.
  using BeginModalSession = ModalSession (*)(Application& application, Window& window);

  /// The one application of the process.
  static Application& sharedApplication();

  /// Begins a modal session by the current implementation.
  ModalSession beginModalSessionForWindow(Window& window);
  /// Makes `replacement` the implementation of `beginModalSessionForWindow` and returns the former.
  BeginModalSession exchangeBeginModalSession(BeginModalSession replacement);
  /// What the platform's own implementation does with a window, which is nothing without a runner.
  /// Set by the process's owner.
  void setModalRunner(std::function<ModalSession(Window& window)> runner);

 private:
  Application();
  static ModalSession runModal(Application& application, Window& window);

  BeginModalSession mBeginModalSession;
  std::function<ModalSession(Window&)> mModalRunner;
};

}  // namespace desktop
