#pragma once

#include <functional>
#include <memory>

#include <QDBusServiceWatcher>
#include <QMenu>
#include <QSystemTrayIcon>

#include "platform/desktop/x11/x_event_filter.h"
#include "platform/desktop/x11/x_server.h"

namespace tolvane {

/// The application's place in the tray: a left click opens, a right click shows a menu. It appears
/// as soon as the session has a tray of either kind, which at login is often later than us. Main
/// thread only.
class TrayIcon {
 public:
  struct Actions {
    std::function<void()> open;
    std::function<void()> quit;
  };

  /// @param description of the icon, for those who do not see it.
  /// @param server not owned; outlives this object.
  TrayIcon(const char* description, const XServer& server, Actions actions);
  ~TrayIcon() = default;
  TrayIcon(const TrayIcon&) = delete;
  TrayIcon& operator=(const TrayIcon&) = delete;

 private:
  void appear();
  void seen(const XEvent& event);

  const XServer& server_;
  Actions actions_;
  QString description_;
  QMenu menu_;
  QDBusServiceWatcher watcher_;
  XEventFilter filter_;
  std::unique_ptr<QSystemTrayIcon> icon_;
};

}  // namespace tolvane
