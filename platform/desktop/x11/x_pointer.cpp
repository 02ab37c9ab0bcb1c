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
  return ScreenSpace::fromQt(QCursor::pos());
}

void XPointer::startMonitoring(Handler pressed, Handler moved) {
  pressed_ = std::move(pressed);
  moved_ = std::move(moved);
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
    moves_.reset();
    return;
  }
  presses_ = input_.listen(RawInput::Kind::buttonPress, [this](std::uint32_t button) {
    constexpr std::uint32_t left = 1;
    constexpr std::uint32_t right = 3;
    if (button == left || button == right) {
      pressed_({location(), target()});
    }
  });
  moves_ = input_.listen(RawInput::Kind::motion, [this](std::uint32_t) {
    moved_({location(), target()});
  });
}

PointerTarget XPointer::target() const {
  const XWindow under = server_.windowUnderPointer();
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
