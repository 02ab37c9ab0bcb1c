#include "platform/desktop/qt/qt_main_queue.h"

#include <utility>

namespace tolvane {

void QtMainQueue::post(Task task) {
  QMetaObject::invokeMethod(&receiver_, std::move(task), Qt::QueuedConnection);
}

}  // namespace tolvane
