#include "platform/desktop/qt/qt_content_view.h"

namespace tolvane {

QtContentView::QtContentView(QQuickItem& interface,
                             QtPalettePanel& panel,
                             QtSettingsWindow& settings)
    : panel_(panel), settings_(settings), interface_(interface), backdrop_(&view_) {
  interface_.setParentItem(&view_);
  const auto follow = [this] { layOut(); };
  QObject::connect(&view_, &QQuickItem::widthChanged, &view_, follow);
  QObject::connect(&view_, &QQuickItem::heightChanged, &view_, follow);
  view_.setFlag(QQuickItem::ItemIsFocusScope);
  interface_.setFocus(true);
  moveTo(Window::palettePanel);
}

void QtContentView::moveTo(Window window) {
  window_ = window;
  ContentWindow& holder = window == Window::palettePanel ? panel_.window() : settings_.window();
  holder.setContent(view_);
}

void QtContentView::layOut() {
  backdrop_.setSize(view_.size());
  interface_.setSize(view_.size());
}

Size QtContentView::size() const {
  return {view_.width(), view_.height()};
}

void QtContentView::setBackdropShape(const Path& shape) {
  const Path downwards = shape.flipped(view_.height());
  // A window with a frame of its own keeps its square corners.
  const bool isInPanel = window_ == Window::palettePanel;
  Path ground = downwards;
  if (!isInPanel) {
    ground = Path();
    ground.addRoundedRectangle({0, 0, view_.width(), view_.height()}, 0);
  }
  backdrop_.setShape(ground);
  if (isInPanel) {
    panel_.setShape(downwards);
  }
}

}  // namespace tolvane
