#include "platform/desktop/qt/backdrop_item.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPalette>

#include "platform/desktop/qt/soft_shadow.h"
#include "platform/desktop/x11/painter_path.h"

namespace tolvane {

BackdropItem::BackdropItem(QQuickItem* parent) : QQuickPaintedItem(parent) {
  setAntialiasing(true);
}

void BackdropItem::setShape(const Path& shape, Blending blending) {
  blending_ = blending;
  shape_ = painterPathOf(shape);
  shadow_ = blending == Blending::none ? QImage() : SoftShadow::of(shape_, size().toSize());
  update();
}

void BackdropItem::paint(QPainter* painter) {
  constexpr float edgeOpacity = 0.25F;
  constexpr float blurredOpacity = 0.85F;
  const QPalette colours = QGuiApplication::palette();
  QColor ground = colours.color(QPalette::Window);
  QColor edge = colours.color(QPalette::WindowText);
  edge.setAlphaF(edgeOpacity);
  if (blending_ == Blending::blurred) {
    ground.setAlphaF(blurredOpacity);
  }
  if (blending_ != Blending::none) {
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    painter->drawImage(QRect({0, 0}, shadow_.size() * SoftShadow::reduction), shadow_);
    // No shadow under the ground itself, which may be see-through.
    painter->setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter->fillPath(shape_, Qt::black);
    painter->setCompositionMode(QPainter::CompositionMode_SourceOver);
  }
  painter->fillPath(shape_, ground);
  painter->strokePath(shape_, QPen(edge, 1));
}

}  // namespace tolvane
