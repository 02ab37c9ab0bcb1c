#pragma once

#include <QObject>

#include "platform/threads/main_queue.h"

namespace tolvane {

/// The main queue in Qt's loop. Tasks that are still queued when it is destroyed are dropped.
class QtMainQueue final : public MainQueue {
 public:
  /// A task must not throw.
  void post(Task task) override;

 private:
  QObject receiver_;
};

}  // namespace tolvane
