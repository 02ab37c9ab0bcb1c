#include "platform/desktop/qt/desktop_bus_name.h"

#include <utility>

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVirtualObject>
#include <QVariantMap>

#include "platform/files/file_names.h"
#include "platform/files/platform_error.h"
#include "platform/process/desktop_host.h"

namespace tolvane {

namespace {

using Request = DesktopBusName::Request;

constexpr const char* introspection = R"(<interface name="org.freedesktop.Application">
<method name="Activate"><arg type="a{sv}" name="platform_data" direction="in"/></method>
<method name="Open"><arg type="as" name="uris" direction="in"/>
<arg type="a{sv}" name="platform_data" direction="in"/></method>
</interface>)";

DesktopBusName::Files filesIn(const QVariant& addresses) {
  // Who calls us stands in a folder of its own, which it does not tell.
  constexpr const char* noFolder = "/";
  DesktopBusName::Files files;
  for (const QString& word : addresses.toStringList()) {
    files.push_back(FileNames::handedOver(word.toStdString(), noFolder));
  }
  return files;
}

Activation activationIn(const QVariant& platformData) {
  const auto values = qdbus_cast<QVariantMap>(platformData);
  return {values.value(DesktopHost::startupIdKey).toString().toStdString(),
          values.value(DesktopHost::activationTokenKey).toString().toStdString()};
}

QStringList addressesOf(const DesktopBusName::Files& files) {
  QStringList addresses;
  for (const std::filesystem::path& file : files) {
    const std::string text = file.string();
    addresses << QString::fromStdString(FileNames::isAddress(text) ? text
                                                                   : FileNames::localAddress(file));
  }
  return addresses;
}

QVariantMap platformDataOf(const Activation& activation) {
  QVariantMap values;
  if (!activation.startupId.empty()) {
    values[DesktopHost::startupIdKey] = QString::fromStdString(activation.startupId);
  }
  if (!activation.token.empty()) {
    values[DesktopHost::activationTokenKey] = QString::fromStdString(activation.token);
  }
  return values;
}

}  // namespace

class DesktopBusName::Object final : public QDBusVirtualObject {
 public:
  explicit Object(std::function<void(const Request&)> requested)
      : requested_(std::move(requested)) {}

  [[nodiscard]] QString introspect(const QString&) const override { return introspection; }

  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    if (message.interface() != DesktopHost::interfaceName) {
      return false;
    }
    const QList<QVariant> arguments = message.arguments();
    const QString form = message.member() + " " + message.signature();
    if (form == "Activate a{sv}") {
      take({std::nullopt, activationIn(arguments[0])}, message, connection);
      return true;
    }
    if (form == "Open asa{sv}") {
      take({filesIn(arguments[0]), activationIn(arguments[1])}, message, connection);
      return true;
    }
    return false;
  }

 private:
  void take(const Request& request,
            const QDBusMessage& message,
            const QDBusConnection& connection) const {
    connection.send(message.createReply());
    requested_(request);
  }

  std::function<void(const Request&)> requested_;
};

DesktopBusName::DesktopBusName() = default;

DesktopBusName::~DesktopBusName() {
  if (object_ != nullptr) {
    QDBusConnection::sessionBus().unregisterService(DesktopHost::name);
    QDBusConnection::sessionBus().unregisterObject(DesktopHost::path);
  }
}

bool DesktopBusName::claim(std::function<void(const Request&)> requested) {
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) {
    return true;
  }
  // The object first: who sees the name may call it at once. Without the name, its end takes it
  // from the bus again.
  auto object = std::make_unique<Object>(std::move(requested));
  bus.registerVirtualObject(DesktopHost::path, object.get());
  const auto reply = bus.interface()->registerService(DesktopHost::name);
  if (!reply.isValid()) {
    throw PlatformError(reply.error().message().toStdString());
  }
  if (reply.value() != QDBusConnectionInterface::ServiceRegistered) {
    return false;
  }
  object_ = std::move(object);
  return true;
}

void DesktopBusName::handOver(const Request& request) {
  auto call = QDBusMessage::createMethodCall(DesktopHost::name,
                                             DesktopHost::path,
                                             DesktopHost::interfaceName,
                                             request.files ? "Open" : "Activate");
  const QVariantMap platformData = platformDataOf(request.activation);
  call.setArguments(request.files ? QVariantList{addressesOf(*request.files), platformData}
                                  : QVariantList{platformData});
  const QDBusMessage reply = QDBusConnection::sessionBus().call(call);
  if (reply.type() == QDBusMessage::ErrorMessage) {
    throw PlatformError(reply.errorMessage().toStdString());
  }
}

}  // namespace tolvane
