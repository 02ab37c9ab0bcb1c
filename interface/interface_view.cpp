#include "interface/interface_view.h"

#include <stdexcept>

#include <QQmlComponent>

static void loadResources() {
  Q_INIT_RESOURCE(interface);
  Q_INIT_RESOURCE(qmlcache_interface);
}

namespace tolvane {

InterfaceView::InterfaceView(BinaryMessenger& messenger) : channel_(messenger) {
  loadResources();
  QQmlEngine::setObjectOwnership(&channel_, QQmlEngine::CppOwnership);
  QQmlComponent component(&engine_, QUrl("qrc:/tolvane/Interface.qml"));
  item_.reset(qobject_cast<QQuickItem*>(component.createWithInitialProperties(
      {{"channel", QVariant::fromValue<QObject*>(&channel_)}})));
  if (item_ == nullptr) {
    throw std::runtime_error(component.errorString().toStdString());
  }
}

InterfaceView::~InterfaceView() = default;

void InterfaceView::start() {
  QMetaObject::invokeMethod(item_.get(), "start");
}

}  // namespace tolvane
