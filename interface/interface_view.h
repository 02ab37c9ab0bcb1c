#pragma once

#include <memory>

#include <QQmlEngine>
#include <QQuickItem>

#include "interface/interface_channel.h"

namespace tolvane {

/// The interface, as one item that any window may hold. Main thread only.
class InterfaceView {
 public:
  /// @param messenger the interface's end; not owned; outlives this object.
  explicit InterfaceView(BinaryMessenger& messenger);
  ~InterfaceView();
  InterfaceView(const InterfaceView&) = delete;
  InterfaceView& operator=(const InterfaceView&) = delete;

  [[nodiscard]] QQuickItem& item() { return *item_; }

  /// Calls "ready" and shows what it answers. The host is there from now on.
  void start();

 private:
  InterfaceChannel channel_;
  QQmlEngine engine_;
  std::unique_ptr<QQuickItem> item_;
};

}  // namespace tolvane
