#include "platform/desktop/qt/login_wake_notices.h"

#include <QDBusConnection>

namespace tolvane {

LoginWakeNotices::LoginWakeNotices() {
  QDBusConnection::systemBus().connect("org.freedesktop.login1",
                                       "/org/freedesktop/login1",
                                       "org.freedesktop.login1.Manager",
                                       "PrepareForSleep",
                                       this,
                                       SLOT(prepareForSleep(bool)));
}

void LoginWakeNotices::prepareForSleep(bool begins) {
  if (!begins && woken_) {
    woken_();
  }
}

}  // namespace tolvane
