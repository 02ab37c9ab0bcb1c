#include "platform/desktop/qt/desktop_bus_name.h"

#include <utility>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QVariantMap>

#include "platform/files/file_names.h"
#include "platform/process/desktop_host.h"

namespace tolvane {

namespace {

constexpr const char* introspection = R"(<interface name="org.freedesktop.Application">
<method name="Activate"><arg type="a{sv}" name="platform_data" direction="in"/></method>
<method name="Open"><arg type="as" name="uris" direction="in"/>
<arg type="a{sv}" name="platform_data" direction="in"/></method>
<method name="ActivateAction"><arg type="s" name="action_name" direction="in"/>
<arg type="av" name="parameter" direction="in"/>
<arg type="a{sv}" name="platform_data" direction="in"/></method>
</interface>)";

/// Addresses of local files, or paths; others do not count.
DesktopBusName::Files filesIn(const QVariant& argument) {
  DesktopBusName::Files files;
  for (const QString& word : argument.toStringList()) {
    const std::string text = word.toStdString();
    if (text.starts_with('/')) {
      files.emplace_back(text);
    } else if (const auto path = FileNames::localPath(text)) {
      files.emplace_back(*path);
    }
  }
  return files;
}

}  // namespace

class DesktopBusName::Object final : public QDBusVirtualObject {
 public:
  explicit Object(Requests requests) : requests_(std::move(requests)) {}

  [[nodiscard]] QString introspect(const QString&) const override { return introspection; }

  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    if (message.interface() != DesktopHost::interfaceName) {
      return false;
    }
    const QList<QVariant> arguments = message.arguments();
    const Files files =
        message.member() == "Open" && !arguments.isEmpty() ? filesIn(arguments.first()) : Files();
    if (message.member() != "Activate" && message.member() != "Open") {
      return false;
    }
    connection.send(message.createReply());
    if (files.empty()) {
      requests_.activate();
    } else {
      requests_.open(files);
    }
    return true;
  }

 private:
  Requests requests_;
};

DesktopBusName::DesktopBusName() = default;

DesktopBusName::~DesktopBusName() {
  if (object_ != nullptr) {
    QDBusConnection::sessionBus().unregisterService(DesktopHost::name);
    QDBusConnection::sessionBus().unregisterObject(DesktopHost::path);
  }
}

bool DesktopBusName::claim(Requests requests) {
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) {
    return true;
  }
  // The object first: who sees the name may call it at once.
  auto object = std::make_unique<Object>(std::move(requests));
  bus.registerVirtualObject(DesktopHost::path, object.get());
  if (!bus.registerService(DesktopHost::name)) {
    bus.unregisterObject(DesktopHost::path);
    return false;
  }
  object_ = std::move(object);
  return true;
}

void DesktopBusName::handOver(const Files& files) {
  auto call = QDBusMessage::createMethodCall(DesktopHost::name,
                                             DesktopHost::path,
                                             DesktopHost::interfaceName,
                                             files.empty() ? "Activate" : "Open");
  QStringList addresses;
  for (const std::filesystem::path& file : files) {
    addresses << QString::fromStdString(FileNames::localAddress(file));
  }
  const QVariantMap noPlatformData;
  call.setArguments(files.empty() ? QVariantList{noPlatformData}
                                  : QVariantList{addresses, noPlatformData});
  QDBusConnection::sessionBus().call(call);
}

}  // namespace tolvane
