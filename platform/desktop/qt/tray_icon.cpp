#include "platform/desktop/qt/tray_icon.h"

#include <utility>

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <xcb/xcb.h>

#include "platform/desktop/qt/tray_picture.h"

namespace tolvane {

namespace {

constexpr const char* watcherName = "org.kde.StatusNotifierWatcher";
constexpr const char* xembedTray = "_NET_SYSTEM_TRAY_S0";

bool isWatcherThere() {
  const auto* bus = QDBusConnection::sessionBus().interface();
  return bus != nullptr && bus->isServiceRegistered(watcherName);
}

}  // namespace

TrayIcon::TrayIcon(const char* description, const XServer& server, Actions actions)
    : server_(server),
      actions_(std::move(actions)),
      description_(QString::fromUtf8(description)),
      watcher_(
          watcherName, QDBusConnection::sessionBus(), QDBusServiceWatcher::WatchForRegistration),
      filter_([this](const XEvent& event) { seen(event); }) {
  QObject::connect(menu_.addAction("Open tolvane"), &QAction::triggered, actions_.open);
  menu_.addSeparator();
  QAction* quit = menu_.addAction("Quit tolvane");
  quit->setShortcut(QKeySequence("Ctrl+Q"));
  QObject::connect(quit, &QAction::triggered, actions_.quit);
  QObject::connect(&watcher_, &QDBusServiceWatcher::serviceRegistered, [this] { appear(); });
  // Qt itself must not be asked: it would remember for good that there was no watcher.
  if (isWatcherThere() || server_.hasOwner(xembedTray)) {
    appear();
  }
}

void TrayIcon::seen(const XEvent& event) {
  if (event.type != XCB_CLIENT_MESSAGE) {
    return;
  }
  const auto message = event.as<xcb_client_message_event_t>();
  if (message.type == server_.atom("MANAGER") &&
      message.data.data32[1] == server_.atom(xembedTray) && icon_ == nullptr) {
    QMetaObject::invokeMethod(
        &menu_, [this] { appear(); }, Qt::QueuedConnection);
  }
}

void TrayIcon::appear() {
  // An icon that was made before its tray never moves in.
  icon_ = std::make_unique<QSystemTrayIcon>(trayPicture());
  icon_->setToolTip(description_);
  icon_->setContextMenu(&menu_);
  QObject::connect(
      icon_.get(), &QSystemTrayIcon::activated, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger) {
          actions_.open();
        }
      });
  icon_->show();
}

}  // namespace tolvane
