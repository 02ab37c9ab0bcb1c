#include "engine/primitives/cancellation_token.h"

#include "engine/primitives/conversion_failure.h"

namespace tolvane {

void CancellationToken::cancel() {
  const std::lock_guard guard(lock_);
  value_ = true;
}

bool CancellationToken::isCancelled() const {
  const std::lock_guard guard(lock_);
  return value_;
}

void CancellationToken::check() const {
  if (isCancelled()) {
    throw ConversionFailure::cancelled();
  }
}

}  // namespace tolvane
