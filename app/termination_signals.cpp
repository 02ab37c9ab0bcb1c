#include "app/termination_signals.h"

#include <utility>

#include <QSocketNotifier>

namespace tolvane {

TerminationSignals::TerminationSignals() = default;

void TerminationSignals::listen(std::function<void()> arrived) {
  notifier_ = std::make_unique<QSocketNotifier>(signals_.descriptor(), QSocketNotifier::Read);
  QObject::connect(
      notifier_.get(), &QSocketNotifier::activated, [this, arrived = std::move(arrived)] {
        notifier_->setEnabled(false);
        arrived();
      });
}

TerminationSignals::~TerminationSignals() = default;

}  // namespace tolvane
