#include "app/app_delegate.h"

#include <cstdlib>

#include <QApplication>

#include "app/window_places.h"
#include "platform/desktop/x11/screen_space.h"
#include "platform/desktop/x11/user_action.h"
#include "universal/dispatch/universal_engine.h"

namespace tolvane {

namespace {

constexpr const char* statusDescription = "tolvane – converts your files here, on this computer";

}  // namespace

void AppDelegate::applicationDidFinishLaunching() {
  QApplication::setQuitOnLastWindowClosed(false);
  interface_.emplace(messengers_.interface());
  accessibility_ = atspiAccessibility(
      [this](std::uint64_t window) {
        return windowPlace(platform_->server(), static_cast<XWindow>(window));
      },
      ScreenSpace::fromPrimary);
  platform_.emplace(
      interface_->item(),
      DesktopPlatform::Accessibility{*accessibility_.selection, *accessibility_.tree});
  bridge_.emplace(messengers_.host(),
                  platform_->mainQueue(),
                  platform_->services(),
                  UniversalEngine::completeEngine());
  interface_->start();
  statusItem_.emplace(
      statusDescription,
      platform_->server(),
      TrayIcon::Actions{[this] { openPalette(); }, [this] { applicationShouldTerminate(); }});
}

void AppDelegate::openPalette() {
  bridge_->open(Bridge::Intake::finderSelection);
}

void AppDelegate::follow(const DesktopBusName::Request& request) {
  const UserAction action(platform_->server(), request.activation.startNotice());
  if (request.files) {
    bridge_->open(*request.files);
  } else {
    openPalette();
  }
}

void AppDelegate::applicationShouldTerminate() {
  signals_.endWithin(EndingSignals::usualPatience, EXIT_FAILURE);
  if (!bridge_->prepareToQuit(&QApplication::quit)) {
    QApplication::quit();
  }
}

}  // namespace tolvane
