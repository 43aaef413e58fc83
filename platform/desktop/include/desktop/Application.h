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

class DESKTOP_EXPORT Application {
 public:
  using BeginModalSession = ModalSession (*)(Application& application, Window& window);

  static Application& sharedApplication();

  /// Begins a modal session by the current implementation.
  ModalSession beginModalSessionForWindow(Window& window);
  /// Makes `replacement` the implementation of `beginModalSessionForWindow` and returns the former.
  BeginModalSession exchangeBeginModalSession(BeginModalSession replacement);
  /// What the platform's own implementation does with a window; set by the process's owner.
  void setModalRunner(std::function<ModalSession(Window& window)> runner);
  ModalSession runModal(Window& window);

 private:
  Application();

  BeginModalSession mBeginModalSession;
  std::function<ModalSession(Window&)> mModalRunner;
};

}  // namespace desktop
