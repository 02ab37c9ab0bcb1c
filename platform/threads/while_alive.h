#pragma once

#include <memory>
#include <utility>

namespace tolvane {

/// Wraps a handler that may be called after the end of what it works for: from then on it does
/// nothing. Both end and are called on one thread.
/// @param owner what has to be alive.
template <typename Handler>
[[nodiscard]] auto whileAlive(std::weak_ptr<const void> owner, Handler handler) {
  return [owner = std::move(owner), handler = std::move(handler)](auto... arguments) {
    if (!owner.expired()) {
      handler(std::move(arguments)...);
    }
  };
}

}  // namespace tolvane
