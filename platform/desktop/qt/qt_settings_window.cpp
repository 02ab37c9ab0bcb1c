#include "platform/desktop/qt/qt_settings_window.h"

#include <cmath>

#include <QCursor>
#include <QGuiApplication>
#include <QPalette>

#include "platform/desktop/qt/window_focus.h"
#include "platform/desktop/x11/screen_space.h"

namespace tolvane {

QtSettingsWindow::QtSettingsWindow(XServer& server)
    : server_(server),
      screens_(server),
      window_(SettingsWindow::title,
              Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                  Qt::WindowCloseButtonHint) {}

void QtSettingsWindow::setContentSize(Size size) {
  wanted_ = {static_cast<int>(std::lround(size.width)), static_cast<int>(std::lround(size.height))};
  window_.resize(wanted_);
}

void QtSettingsWindow::centreAndMakeKey() {
  constexpr int titleBar = 40;  // points, about
  const std::optional<Screen> screen = screens_.holding(ScreenSpace::middleOf(QCursor::pos()));
  QRect frame(window_.position(), wanted_);
  if (screen) {
    const QRect room = ScreenSpace::toQt(screen->visibleFrame).adjusted(0, titleBar, 0, 0);
    frame.setSize(wanted_.boundedTo(room.size()));
    frame.moveCenter(room.center());
  }
  window_.setMinimumSize(frame.size());
  window_.setMaximumSize(frame.size());
  window_.setGeometry(frame);
  window_.fitContent();
  window_.setColor(QGuiApplication::palette().color(QPalette::Window));
  WindowFocus::showInFront(window_, server_, WindowFocus::Workspaces::current);
}

}  // namespace tolvane
