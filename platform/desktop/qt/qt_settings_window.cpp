#include "platform/desktop/qt/qt_settings_window.h"

#include <cmath>

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

#include "platform/desktop/qt/window_focus.h"

namespace tolvane {

QtSettingsWindow::QtSettingsWindow(XServer& server)
    : server_(server),
      window_(SettingsWindow::title,
              Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                  Qt::WindowCloseButtonHint) {}

void QtSettingsWindow::setContentSize(Size size) {
  window_.resize(static_cast<int>(std::lround(size.width)),
                 static_cast<int>(std::lround(size.height)));
}

void QtSettingsWindow::centreAndMakeKey() {
  constexpr int titleBar = 40;  // points, about
  QScreen* screen = QGuiApplication::screenAt(QCursor::pos());
  if (screen == nullptr) {
    screen = QGuiApplication::primaryScreen();
  }
  if (screen != nullptr) {
    const QRect room = screen->availableGeometry().adjusted(0, titleBar, 0, 0);
    QRect frame({0, 0}, window_.size().boundedTo(room.size()));
    frame.moveCenter(room.center());
    window_.setGeometry(frame);
  }
  window_.fitContent();
  WindowFocus::showInFront(window_, server_, WindowFocus::Workspaces::current);
}

}  // namespace tolvane
