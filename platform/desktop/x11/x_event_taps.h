#pragma once

#include "platform/desktop/event_tap.h"
#include "platform/desktop/x11/raw_input.h"

namespace tolvane {

/// Taps of presses of the secondary button, the only events that are told; a tap for others
/// stays silent. The server disables none.
class XEventTaps final : public EventTaps {
 public:
  /// Neither is owned; both outlive this object and its taps.
  XEventTaps(const XServer& server, RawInput& input) : server_(server), input_(input) {}

  [[nodiscard]] std::unique_ptr<EventTap> create(
      std::uint64_t mask, std::function<void(const TapEvent& event)> handler) override;

 private:
  const XServer& server_;
  RawInput& input_;
};

}  // namespace tolvane
