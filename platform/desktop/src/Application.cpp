#include "desktop/Application.h"

#include <utility>

namespace desktop {

Application::Application() : mBeginModalSession(runModal) {}

Application& Application::sharedApplication() {
  static auto& application = *new Application;
  return application;
}

ModalSession Application::beginModalSessionForWindow(Window& window) {
  return mBeginModalSession(*this, window);
}

Application::BeginModalSession Application::exchangeBeginModalSession(
    BeginModalSession replacement) {
  return std::exchange(mBeginModalSession, replacement);
}

void Application::setModalRunner(std::function<ModalSession(Window& window)> runner) {
  mModalRunner = std::move(runner);
}

ModalSession Application::runModal(Application& application, Window& window) {
  return application.mModalRunner ? application.mModalRunner(window) : 0;
}

}  // namespace desktop
