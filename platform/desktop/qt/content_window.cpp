#include "platform/desktop/qt/content_window.h"

#include <utility>

#include <QKeyEvent>
#include <QQuickItem>

namespace tolvane {

ContentWindow::ContentWindow(const char* title, Qt::WindowFlags flags) {
  setTitle(QString::fromUtf8(title));
  setFlags(flags);
}

void ContentWindow::setContent(QQuickItem& item) {
  item.setParentItem(contentItem());
  fitContent();
  item.forceActiveFocus();
}

void ContentWindow::fitContent() {
  for (QQuickItem* item : contentItem()->childItems()) {
    item->setPosition({0, 0});
    item->setSize(size());
  }
}

void ContentWindow::exposeEvent(QExposeEvent* event) {
  QQuickWindow::exposeEvent(event);
  if (isExposed() && !wasExposed_ && exposed_) {
    exposed_();
  }
  wasExposed_ = isExposed();
}

void ContentWindow::keyPressEvent(QKeyEvent* event) {
  event->ignore();
  QQuickWindow::keyPressEvent(event);
  if (!event->isAccepted() && event->key() == Qt::Key_Escape) {
    event->accept();
    dismiss();
  }
}

void ContentWindow::resizeEvent(QResizeEvent* event) {
  QQuickWindow::resizeEvent(event);
  fitContent();
}

bool ContentWindow::event(QEvent* event) {
  if (event->type() == QEvent::Close) {
    event->ignore();
    dismiss();
    return true;
  }
  return QQuickWindow::event(event);
}

void ContentWindow::dismiss() {
  // Copied, because it may be replaced meanwhile.
  if (const auto dismissed = dismissed_) {
    dismissed();
  }
}

}  // namespace tolvane
