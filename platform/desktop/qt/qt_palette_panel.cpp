#include "platform/desktop/qt/qt_palette_panel.h"

#include <QGuiApplication>
#include <QPalette>
#include <QVariantAnimation>

#include "platform/desktop/qt/soft_shadow.h"
#include "platform/desktop/qt/window_focus.h"
#include "platform/desktop/x11/screen_space.h"

namespace tolvane {

QtPalettePanel::QtPalettePanel(XServer& server)
    : server_(server),
      compositor_(server),
      window_(PalettePanel::title,
              Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                  Qt::NoDropShadowWindowHint),
      backdrop_(window_.contentItem()),
      windowShape_(server, window_),
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
  window_.onExposed([this] { windowShape_.apply(); });
  compositor_.onChange([this] { compositorChanged(); });
}

QtPalettePanel::~QtPalettePanel() = default;

int QtPalettePanel::margin() const {
  return isBlended() ? SoftShadow::reach : 0;
}

Rectangle QtPalettePanel::frame() const {
  const int side = margin();
  return ScreenSpace::fromQt(window_.geometry().marginsRemoved({side, side, side, side}));
}

void QtPalettePanel::setFrame(const Rectangle& frame) {
  blending_ = compositor_.blending();
  place(frame);
}

void QtPalettePanel::place(const Rectangle& frame) {
  const int side = margin();
  // Window managers keep what is inside on the screen, and compositors draw no shadow around it.
  const auto pixels = static_cast<std::uint32_t>(side * window_.devicePixelRatio());
  server_.setNumbers(static_cast<XWindow>(window_.winId()),
                     "_GTK_FRAME_EXTENTS",
                     {pixels, pixels, pixels, pixels});
  window_.setMargin(side);
  window_.setGeometry(ScreenSpace::toQt(frame).marginsAdded({side, side, side, side}));
  window_.fitContent();
  backdrop_.setSize(window_.size());
  // What is see-through shows black where nothing is blended, also along the edge of the shape.
  window_.setColor(isBlended() ? QColor(Qt::transparent)
                               : QGuiApplication::palette().color(QPalette::Window));
}

void QtPalettePanel::setShape(const Path& shape, ContentView::FreeParts freeParts) {
  shape_ = shape;
  freeParts_ = freeParts;
  applyShape();
}

void QtPalettePanel::applyShape() {
  const auto side = static_cast<double>(margin());
  const Path ground = shape_.movedBy({side, side});
  Path frame;
  frame.addRoundedRectangle(Rectangle{0, 0, backdrop_.width(), backdrop_.height()}.insetBy(side),
                            0);
  const bool takesAll = freeParts_ == ContentView::FreeParts::takePointer;
  backdrop_.setShape(ground, blending_);
  windowShape_.set({ground, takesAll ? frame : ground, blending_});
}

void QtPalettePanel::compositorChanged() {
  if (!isVisible()) {
    return;  // the next frame looks itself
  }
  const Rectangle kept = frame();
  setFrame(kept);
  applyShape();
  setOpacity(1);
}

void QtPalettePanel::makeKeyAndOrderFront() {
  WindowFocus::showInFront(window_, server_, WindowFocus::Workspaces::all);
}

void QtPalettePanel::orderOut() {
  fade_->stop();
  window_.hide();
}

void QtPalettePanel::setOpacity(double opacity) {
  fade_->stop();
  window_.contentItem()->setOpacity(isBlended() ? opacity : 1);
}

void QtPalettePanel::fadeIn(std::chrono::milliseconds duration) {
  if (!isBlended()) {
    return;
  }
  fade_->setStartValue(window_.contentItem()->opacity());
  fade_->setEndValue(1.0);
  fade_->setDuration(static_cast<int>(duration.count()));
  fade_->start();
}

}  // namespace tolvane
