#include "platform/desktop/qt/qt_content_view.h"

namespace tolvane {

QtContentView::QtContentView(QQuickItem& interface,
                             QtPalettePanel& panel,
                             QtSettingsWindow& settings)
    : panel_(panel), settings_(settings), interface_(interface) {
  interface_.setParentItem(&view_);
  const auto follow = [this] { interface_.setSize(view_.size()); };
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

Size QtContentView::size() const {
  return {view_.width(), view_.height()};
}

void QtContentView::setBackdropShape(const Path& shape, FreeParts freeParts) {
  if (window_ == Window::palettePanel) {
    panel_.setShape(shape.flipped(view_.height()), freeParts);
  }
}

}  // namespace tolvane
