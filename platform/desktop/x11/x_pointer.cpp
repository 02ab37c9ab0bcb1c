#include "platform/desktop/x11/x_pointer.h"

#include <utility>

#include <QCursor>
#include <QGuiApplication>
#include <QWindow>

#include "platform/desktop/x11/screen_space.h"

namespace tolvane {

class XPointer::VisibilityConnection {
 public:
  VisibilityConnection(QWindow& window, std::function<void(bool)> changed)
      : connection_(QObject::connect(&window, &QWindow::visibleChanged, std::move(changed))) {}
  ~VisibilityConnection() { QObject::disconnect(connection_); }
  VisibilityConnection(const VisibilityConnection&) = delete;
  VisibilityConnection& operator=(const VisibilityConnection&) = delete;

 private:
  QMetaObject::Connection connection_;
};

XPointer::XPointer(const XServer& server, RawInput& input, QWindow& palette)
    : server_(server), input_(input), palette_(palette) {}

XPointer::~XPointer() = default;

Point XPointer::location() const {
  return ScreenSpace::middleOf(QCursor::pos());
}

void XPointer::startMonitoring(Handler pressed, Handler) {
  pressed_ = std::move(pressed);
  visibility_ = std::make_unique<VisibilityConnection>(
      palette_, [this](bool isVisible) { follow(isVisible); });
  follow(palette_.isVisible());
}

void XPointer::stopMonitoring() {
  visibility_.reset();
  follow(false);
}

void XPointer::follow(bool isPaletteVisible) {
  if (!isPaletteVisible) {
    presses_.reset();
    return;
  }
  presses_ = input_.listen([this](std::uint32_t button) {
    constexpr std::uint32_t primary = 1;
    constexpr std::uint32_t secondary = 3;
    if (button == primary || button == secondary) {
      pressed_({location(), target()});
    }
  });
}

PointerTarget XPointer::target() const {
  const XWindow under = server_.windowsUnderPointer().back();
  if (palette_.handle() != nullptr && under == palette_.winId()) {
    return PointerTarget::palettePanel;
  }
  for (const QWindow* window : QGuiApplication::allWindows()) {
    if (window->handle() != nullptr && under == window->winId()) {
      return PointerTarget::otherOwnWindow;
    }
  }
  return PointerTarget::otherApplication;
}

}  // namespace tolvane
