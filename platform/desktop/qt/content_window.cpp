#include "platform/desktop/qt/content_window.h"

#include <utility>

#include <QKeyEvent>

namespace tolvane {

ContentWindow::ContentWindow(const char* title, Qt::WindowFlags flags) {
  setTitle(QString::fromUtf8(title));
  setFlags(flags);
}

void ContentWindow::setContent(QQuickItem& item) {
  content_ = &item;
  item.setParentItem(contentItem());
  fitContent();
  item.forceActiveFocus();
}

void ContentWindow::fitContent() {
  if (content_ != nullptr && content_->parentItem() == contentItem()) {
    content_->setPosition({static_cast<double>(margin_), static_cast<double>(margin_)});
    content_->setSize(size().shrunkBy({margin_, margin_, margin_, margin_}));
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
  if (!event->isAccepted() && event->key() == Qt::Key_Escape && !isRepetition(*event)) {
    event->accept();
    dismiss();
  }
}

void ContentWindow::keyReleaseEvent(QKeyEvent* event) {
  QQuickWindow::keyReleaseEvent(event);
  repetition_.released(event->timestamp());
}

bool ContentWindow::isRepetition(const QKeyEvent& press) const {
  // Qt's own mark is missing when it reads the release before the press has come.
  return press.isAutoRepeat() || repetition_.isSeenAt(press.timestamp());
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
