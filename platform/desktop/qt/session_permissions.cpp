#include "platform/desktop/qt/session_permissions.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace tolvane {

namespace {

constexpr const char* properties = "org.freedesktop.DBus.Properties";
constexpr const char* accessibility = "org.a11y.Bus";
constexpr const char* accessibilityPath = "/org/a11y/bus";
constexpr const char* accessibilityStatus = "org.a11y.Status";
constexpr const char* portal = "org.freedesktop.portal.Desktop";
constexpr const char* portalPath = "/org/freedesktop/portal/desktop";
constexpr const char* portalSettings = "org.freedesktop.portal.Settings";
constexpr const char* motionGroup = "org.gnome.desktop.interface";
constexpr const char* motionKey = "enable-animations";

/// The portal wraps values in one variant more than it says.
QVariant unwrapped(QVariant value) {
  while (value.canConvert<QDBusVariant>()) {
    value = value.value<QDBusVariant>().variant();
  }
  return value;
}

}  // namespace

SessionPermissions::SessionPermissions(const RawInput& input) : input_(input) {
  QDBusConnection::sessionBus().connect(portal,
                                        portalPath,
                                        portalSettings,
                                        "SettingChanged",
                                        this,
                                        SLOT(settingChanged(QString, QString, QDBusVariant)));
  readMotion();
}

void SessionPermissions::readMotion() {
  auto call = QDBusMessage::createMethodCall(portal, portalPath, portalSettings, "Read");
  call.setArguments({QString(motionGroup), QString(motionKey)});
  auto* const watcher =
      new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
    watcher->deleteLater();
    const QDBusPendingReply<QDBusVariant> reply = *watcher;
    if (reply.isValid()) {
      settingChanged(motionGroup, motionKey, reply.value());
    }
  });
}

void SessionPermissions::settingChanged(const QString& group,
                                        const QString& key,
                                        const QDBusVariant& value) {
  if (group == motionGroup && key == motionKey) {
    reducesMotion_ = !unwrapped(value.variant()).toBool();
  }
}

bool SessionPermissions::isTrustedForAccessibility() const {
  constexpr int longestWait = 100;  // milliseconds; the user waits
  auto call = QDBusMessage::createMethodCall(accessibility, accessibilityPath, properties, "Get");
  call.setArguments({QString(accessibilityStatus), QString("IsEnabled")});
  const QDBusMessage reply = QDBusConnection::sessionBus().call(call, QDBus::Block, longestWait);
  return reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty() &&
         unwrapped(reply.arguments().first()).toBool();
}

void SessionPermissions::requestAccessibility() {
  auto call = QDBusMessage::createMethodCall(accessibility, accessibilityPath, properties, "Set");
  call.setArguments({QString(accessibilityStatus),
                     QString("IsEnabled"),
                     QVariant::fromValue(QDBusVariant(true))});
  QDBusConnection::sessionBus().asyncCall(call);
}

}  // namespace tolvane
