#include "platform/desktop/qt/qt_palette_panel.h"

#include <QGuiApplication>
#include <QPalette>
#include <QQuickItem>
#include <QVariantAnimation>

#include "platform/desktop/qt/window_focus.h"
#include "platform/desktop/x11/screen_space.h"

namespace tolvane {

QtPalettePanel::QtPalettePanel(XServer& server)
    : server_(server),
      window_(PalettePanel::title,
              Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                  Qt::NoDropShadowWindowHint),
      shape_(server, window_),
      fade_(std::make_unique<QVariantAnimation>()) {
  QSurfaceFormat format = window_.requestedFormat();
  constexpr int alphaBits = 8;
  format.setAlphaBufferSize(alphaBits);
  window_.setFormat(format);
  window_.create();
  // The content's opacity, because compositors show a window's own one with a few frames only.
  QObject::connect(fade_.get(), &QVariantAnimation::valueChanged, [this](const QVariant& opacity) {
    window_.contentItem()->setOpacity(opacity.toDouble());
  });
  // What is mapped has the keyboard's and the pointer's attention only now.
  window_.onExposed([this] { shape_.apply(); });
}

QtPalettePanel::~QtPalettePanel() = default;

Rectangle QtPalettePanel::frame() const {
  return ScreenSpace::fromQt(window_.geometry());
}

void QtPalettePanel::setFrame(const Rectangle& frame) {
  window_.setGeometry(ScreenSpace::toQt(frame));
  window_.fitContent();
}

void QtPalettePanel::makeKeyAndOrderFront() {
  // What is see-through shows black without a compositor, also along the edge of the shape.
  window_.setColor(server_.isComposited() ? QColor(Qt::transparent)
                                          : QGuiApplication::palette().color(QPalette::Window));
  WindowFocus::showInFront(window_, server_, WindowFocus::Workspaces::all);
}

void QtPalettePanel::orderOut() {
  fade_->stop();
  window_.hide();
}

void QtPalettePanel::setOpacity(double opacity) {
  fade_->stop();
  window_.contentItem()->setOpacity(server_.isComposited() ? opacity : 1);
}

void QtPalettePanel::fadeIn(std::chrono::milliseconds duration) {
  if (!server_.isComposited()) {
    return;
  }
  fade_->setStartValue(window_.contentItem()->opacity());
  fade_->setEndValue(1.0);
  fade_->setDuration(static_cast<int>(duration.count()));
  fade_->start();
}

}  // namespace tolvane
