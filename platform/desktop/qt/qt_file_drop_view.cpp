#include "platform/desktop/qt/qt_file_drop_view.h"

#include <utility>

#include <QClipboard>
#include <QDropEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMimeData>
#include <QUrl>

#include "platform/files/file_names.h"

namespace tolvane {

class QtFileDropView::Filter final : public QObject {
 public:
  explicit Filter(QtFileDropView& view) : view_(view) {}

  bool eventFilter(QObject*, QEvent* event) override {
    switch (event->type()) {
      case QEvent::DragEnter:
      case QEvent::DragMove: {
        auto* const move = static_cast<QDragMoveEvent*>(event);
        move->setDropAction(Qt::CopyAction);
        move->accept();
        return true;
      }
      case QEvent::Drop: {
        auto* const drop = static_cast<QDropEvent*>(event);
        drop->setDropAction(Qt::CopyAction);
        drop->setAccepted(view_.take(drop->mimeData()));
        return true;
      }
      case QEvent::KeyPress:
        return static_cast<QKeyEvent*>(event)->matches(QKeySequence::Paste) &&
               view_.take(QGuiApplication::clipboard()->mimeData());
      default:
        return false;
    }
  }

 private:
  QtFileDropView& view_;
};

QtFileDropView::QtFileDropView(ContentWindow& panel, ContentWindow& settings)
    : filter_(std::make_unique<Filter>(*this)) {
  panel.installEventFilter(filter_.get());
  settings.installEventFilter(filter_.get());
}

QtFileDropView::~QtFileDropView() = default;

bool QtFileDropView::take(const QMimeData* data) {
  constexpr const char* addressList = "text/uri-list";  // RFC 2483: one a line, # starts a comment
  std::vector<std::filesystem::path> files;
  for (const QByteArray& line : data->data(addressList).split('\n')) {
    if (const auto path = FileNames::localPath(line.trimmed().toStdString())) {
      files.emplace_back(*path);
    }
  }
  if (files.empty() || !files_) {
    return false;
  }
  files_(std::move(files));
  return true;
}

}  // namespace tolvane
