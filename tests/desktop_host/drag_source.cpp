#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>
#include <QUrl>
#include <QWidget>

namespace {

/// A window from which the files named on the command line can be dragged.
class DragSource final : public QWidget {
 public:
  DragSource() {
    setWindowTitle("drag source");
    setGeometry(1200, 700, 200, 200);
  }

 protected:
  void mousePressEvent(QMouseEvent*) override {
    QList<QUrl> files;
    for (const QString& file : QApplication::arguments().mid(1)) {
      files << QUrl::fromLocalFile(file);
    }
    auto* const content = new QMimeData;
    content->setUrls(files);
    auto* const drag = new QDrag(this);
    drag->setMimeData(content);
    drag->exec(Qt::CopyAction);
  }
};

}  // namespace

int main(int count, char** words) {
  const QApplication application(count, words);
  DragSource source;
  source.show();
  return QApplication::exec();
}
