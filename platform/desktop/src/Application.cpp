#include "desktop/Application.h"

#include <utility>

namespace desktop {
namespace {

ModalSession PlatformBeginModalSession(Application& application, Window& window) {
  return application.runModal(window);
}

}  // namespace

Application::Application() : mBeginModalSession(PlatformBeginModalSession) {}

Application& Application::sharedApplication() {
  static Application application;
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

ModalSession Application::runModal(Window& window) {
  return mModalRunner ? mModalRunner(window) : 0;
}

}  // namespace desktop
